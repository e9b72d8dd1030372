// The words on the display, in the user's language.
#pragma once

#include <string>

#include "platform/foundation/Bundle.h"

namespace vel {

struct Labels {
  /// From the host's bundle; without one, English.
  explicit Labels(const Bundle* bundle);

  std::wstring user;
  std::wstring system;
  std::wstring nice;
  std::wstring idle;
  std::wstring cpu;  ///< stands before a processor's number
  std::wstring load;
  std::wstring tasks;
  std::wstring threads;
  std::wstring upTime;
  std::wstring alert;     ///< stands before the rule for one
  std::wstring gpuAlert;  ///< stands alone

  std::wstring graph;
  std::wstring topProcesses;
  std::wstring topProcessesNow;
  std::wstring topProcessesAverage;

  // What a key does: a word, and a line of the help page.
  std::wstring quit;
  std::wstring quitExplained;
  std::wstring ranking;
  std::wstring rankingExplained;
  std::wstring cores;
  std::wstring coresExplained;
  std::wstring graphKey;
  std::wstring graphExplained;
  std::wstring gpuKey;
  std::wstring gpuExplained;
  std::wstring gpuAlertExplained;
  std::wstring alertKey;
  std::wstring alertExplained;
  std::wstring thresholdExplained;
  std::wstring durationExplained;
  std::wstring dismiss;
  std::wstring dismissExplained;
  std::wstring end;
  std::wstring endExplained;
  std::wstring force;
  std::wstring no;
  std::wstring chooseExplained;
  std::wstring chooseFirst;
  std::wstring help;
  std::wstring helpExplained;

  // Above and below these lines.
  std::wstring keys;
  std::wstring anyKey;

  std::string niceFormat;   ///< behind the item's percentage; "%ld" is another
  std::string monthFormat;  ///< "%ld" is the number of months
  std::string dayFormat;
};

}  // namespace vel
