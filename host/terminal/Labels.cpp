#include "host/terminal/Labels.h"

#include <string_view>

#include "host/terminal/Text.h"

namespace vel {
namespace {

std::string_view localized(const Bundle* bundle, std::string_view english) {
  return bundle != nullptr ? bundle->localizedString(english) : english;
}

}  // namespace

Labels::Labels(const Bundle* bundle)
    : user(decode(localized(bundle, "User"))),
      system(decode(localized(bundle, "System"))),
      nice(decode(localized(bundle, "Nice"))),
      idle(decode(localized(bundle, "Idle"))),
      cpu(decode(localized(bundle, "CPU"))),
      load(decode(localized(bundle, "Load"))),
      tasks(decode(localized(bundle, "Tasks"))),
      threads(decode(localized(bundle, "Threads"))),
      upTime(decode(localized(bundle, "Up"))),
      alert(decode(localized(bundle, "Alert"))),
      gpuAlert(decode(localized(bundle, "GPU alert"))),
      graph(decode(localized(bundle, "Graph"))),
      topProcesses(decode(localized(bundle, "Top processes"))),
      topProcessesNow(decode(localized(bundle, "Top processes, now"))),
      topProcessesAverage(decode(localized(bundle, "Top processes, average since start"))),
      quit(decode(localized(bundle, "quit"))),
      quitExplained(decode(localized(bundle, "end the program"))),
      ranking(decode(localized(bundle, "ranking"))),
      rankingExplained(
          decode(localized(bundle, "rank the processes by current load or average since start"))),
      cores(decode(localized(bundle, "cores"))),
      coresExplained(decode(localized(
          bundle, "gauges and graph for all as one, each core or each logical processor"))),
      graphKey(decode(localized(bundle, "graph"))),
      graphExplained(decode(localized(bundle, "show or hide the graph of the load over time"))),
      gpuKey(decode(localized(bundle, "GPU"))),
      gpuExplained(decode(localized(bundle, "show or hide which graphics processor is in use"))),
      gpuAlertExplained(decode(
          localized(bundle, "alerts of a change of the graphics processor shown by v, on or off"))),
      alertKey(decode(localized(bundle, "alert"))),
      alertExplained(
          decode(localized(bundle, "alerts of processes that use too much CPU, on or off"))),
      thresholdExplained(
          decode(localized(bundle, "how much is too much, less or more: 100 % is one core"))),
      durationExplained(
          decode(localized(bundle, "for how long before there is an alert, shorter or longer"))),
      dismiss(decode(localized(bundle, "dismiss"))),
      dismissExplained(decode(localized(bundle, "take the alert off the first line"))),
      end(decode(localized(bundle, "end"))),
      endExplained(decode(
          localized(bundle, "end the chosen process and those it started, after a question"))),
      force(decode(localized(bundle, "force"))),
      no(decode(localized(bundle, "no"))),
      chooseExplained(decode(localized(bundle, "choose a process of the list; Esc chooses none"))),
      chooseFirst(decode(localized(bundle, "Choose a process of the list first, with ↑ or ↓."))),
      help(decode(localized(bundle, "help"))),
      helpExplained(decode(localized(bundle, "this page"))),
      keys(decode(localized(bundle, "Keys"))),
      anyKey(decode(localized(bundle, "Any key goes back."))),
      niceFormat(localized(bundle, "+ %ld%% nice")),
      monthFormat(localized(bundle, "%ldmo")),
      dayFormat(localized(bundle, "%ldd")) {}

}  // namespace vel
