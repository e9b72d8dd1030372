// The module's settings that a key changes, through the module's own controls.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/headless/HeadlessControls.h"

namespace vel {

/// Operates the controls as a user does, so that the module broadcasts and keeps the change. A
/// control that the module does not have cannot be operated: that does nothing.
class ModuleControls {
 public:
  /// `preferences` is the module's view, null for none.
  explicit ModuleControls(View* preferences);

  [[nodiscard]] bool hasRanking() const { return ranking_ != nullptr; }
  [[nodiscard]] bool hasCores() const { return cores_ != nullptr; }
  [[nodiscard]] bool hasGraph() const { return graph_ != nullptr; }

  // The choice after the present one, the first after the last.
  void chooseNextRanking() { chooseNext(ranking_); }
  void chooseNextCores() { chooseNext(cores_); }
  void toggleGraph();

  /// How processes are ranked: a value of `broadcast::top5Type`.
  [[nodiscard]] std::optional<std::int64_t> ranking() const;

 private:
  static void chooseNext(HeadlessPopUpButton* popUp);

  HeadlessPopUpButton* ranking_;
  HeadlessPopUpButton* cores_;
  HeadlessButton* graph_;
};

}  // namespace vel
