// The module's settings that a key changes, through the module's own controls.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/headless/HeadlessControls.h"

namespace vel {

/// What the user is alerted of: a process that has been above the threshold for too long.
struct AlertRule {
  std::int64_t threshold = 0;  ///< percent of one core
  std::int64_t minutes = 0;
};

/// Operates the controls as a user does, so that the module broadcasts and keeps the change. A
/// control that the module does not have, or hides, cannot be operated: that does nothing.
class ModuleControls {
 public:
  /// The module's views, null for none.
  ModuleControls(View* preferences, View* alertPreferences);

  [[nodiscard]] bool hasRanking() const { return ranking_ != nullptr; }
  [[nodiscard]] bool hasCores() const { return cores_ != nullptr; }
  [[nodiscard]] bool hasGraph() const { return isOffered(graph_); }
  [[nodiscard]] bool hasAlert() const { return isOffered(alert_); }
  // Hidden where there are no two graphics processors to switch between.
  [[nodiscard]] bool hasGPU() const { return isOffered(gpu_); }
  [[nodiscard]] bool hasGPUAlert() const { return isOffered(gpuAlert_); }

  // The choice after the present one, the first after the last.
  void chooseNextRanking() { chooseNext(ranking_); }
  void chooseNextCores() { chooseNext(cores_); }
  void toggleGraph() { toggle(graph_); }
  void toggleAlert() { toggle(alert_); }
  void toggleGPU() { toggle(gpu_); }
  void toggleGPUAlert() { toggle(gpuAlert_); }

  // The next choice by its value, if there is one. While there are no alerts the module has these
  // controls disabled.
  void raiseThreshold() { chooseHigher(threshold_); }
  void lowerThreshold() { chooseLower(threshold_); }
  void lengthenDuration() { chooseHigher(minutes_); }
  void shortenDuration() { chooseLower(minutes_); }

  /// How processes are ranked: a value of `broadcast::top5Type`.
  [[nodiscard]] std::optional<std::int64_t> ranking() const;

  /// None while there are no alerts.
  [[nodiscard]] std::optional<AlertRule> alertRule() const;

  /// Whether there are alerts of another graphics processor: only while the one in use is shown.
  [[nodiscard]] bool isGPUAlertOn() const;

 private:
  static bool isOffered(const HeadlessButton* button);
  static bool isOn(const HeadlessButton* button);
  static void toggle(HeadlessButton* button);
  static void chooseNext(HeadlessPopUpButton* popUp);
  static void chooseHigher(HeadlessPopUpButton* popUp);
  static void chooseLower(HeadlessPopUpButton* popUp);

  HeadlessPopUpButton* ranking_;
  HeadlessPopUpButton* cores_;
  HeadlessButton* graph_;
  HeadlessButton* gpu_;
  HeadlessButton* alert_;
  HeadlessPopUpButton* threshold_;
  HeadlessPopUpButton* minutes_;
  HeadlessButton* gpuAlert_;
};

}  // namespace vel
