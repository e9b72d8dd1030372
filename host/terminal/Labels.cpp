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
      quit(decode(localized(bundle, "quit"))),
      monthFormat(localized(bundle, "%ldmo")),
      dayFormat(localized(bundle, "%ldd")) {}

}  // namespace vel
