// All that a display has to show.
#pragma once

#include <optional>
#include <string>

#include "host/terminal/Item.h"
#include "host/terminal/ModuleControls.h"
#include "host/terminal/Panel.h"
#include "host/terminal/ProcessList.h"
#include "host/terminal/Readings.h"
#include "host/terminal/RunningProcessors.h"
#include "platform/host/VELGraphMultiple.h"
#include "platform/kernel/Kernel.h"

namespace vel {

struct Content {
  Item item;
  Readings readings;
  std::optional<ProcessList> processes;     ///< none where the module has no panel for them
  const VELGraphMultiple* graph = nullptr;  ///< the module's; null for none
  std::optional<AlertRule> alertRule;       ///< none while there are no alerts
  bool hasGPUAlert = false;                 ///< alerts of another graphics processor are on
  std::wstring alert;                       ///< the latest that the user has not dismissed yet
  std::string chosen;                       ///< the pid of a row of the list; empty for none
  std::wstring prompt;                      ///< a question or an answer; empty for none
  std::wstring promptKeys;                  ///< what the keys do, where it is a question
};

/// Where the content comes from.
class ContentSource {
 public:
  /// `item` is the module's, null for none.
  ContentSource(View* item, const Panel& panel, const ModuleControls& controls, Kernel& kernel)
      : item_(item), panel_(panel), controls_(controls), running_(kernel) {}

  /// Overwrites everything but the alert and what the user is about, which are no readings. To be
  /// called once a refresh.
  void read(const CPUData& record, Content& content);

  /// What has changed without a refresh.
  void readViews(Content& content) const;

 private:
  View* const item_;
  const Panel& panel_;
  const ModuleControls& controls_;
  RunningProcessors running_;
};

}  // namespace vel
