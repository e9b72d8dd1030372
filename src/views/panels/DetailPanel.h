// What the compact and the expanded panel have in common: the shares, the uptime and the graph.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/Property.h"
#include "platform/host/CPUData.h"
#include "platform/host/VELGraphMultiple.h"
#include "platform/windowing/Controls.h"
#include "platform/windowing/Nib.h"
#include "platform/windowing/View.h"
#include "views/cores/DisplayedCores.h"

namespace vel {

/// Settings reach it as broadcasts only; until they do, the panel is as its nib has it. Belongs to
/// the main thread, but for what says otherwise.
class DetailPanel : public std::enable_shared_from_this<DetailPanel> {
 public:
  struct Outlets {
    View& panel;
    TextField& userCPULabel;
    TextField& systemCPULabel;
    TextField& idleCPULabel;
    TextField& niceCPUCaption;  ///< this and the next are hidden while nothing of the load is niced
    TextField& niceCPULabel;
    TextField& uptimeCPULabel;
    VELGraphMultiple& cpuGraph;
  };

  virtual ~DetailPanel();
  DetailPanel(const DetailPanel&) = delete;
  DetailPanel& operator=(const DetailPanel&) = delete;

  /// Once, before anything else.
  virtual void awakeFromNib();

  [[nodiscard]] View& view() const { return outlets_.panel; }
  [[nodiscard]] Property<const CPUData*>& cpuData() { return CPUData_; }

  /// Shows what the record holds; nothing while the panel's window is not on screen.
  void updateView();

  /// On any thread.
  void setCpuCoresInformation(const CpuCoresInformation& information);

 protected:
  /// Of the whole panel, in points.
  struct Heights {
    double graphShown;
    double graphHidden;
  };

  /// The panels share a nib, and with it one name space: there the names of what both have begin
  /// with `prefix`, as in "compactUserCPULabel". Nothing when the nib lacks one of the outlets.
  static std::optional<Outlets> connect(Nib& nib, std::string_view panel,
                                        const std::string& prefix);

  /// What the outlets refer to and the bundle outlive the panel.
  DetailPanel(const Outlets& outlets, const Heights& heights, const Bundle& bundle);

  virtual void updateFields(const CPUData& record);
  /// Has the graph show as many series as cores are to be shown: later, on the main thread, unless
  /// the panel is gone by then.
  void updateCoresDisplayed();

  /// Sets a text that is not there yet.
  static void show(TextField& field, std::string_view text);

 private:
  void registerNotification();
  void updateNice(float share);
  void showGraphDidChanged(const Notification& notification);
  void menuBarCoresDisplayedDidChange(const Notification& notification);  ///< on any thread

  /// Kept: the panel may go with its controller after the platform was uninstalled.
  NotificationCenter& notificationCenter_;
  Outlets outlets_;
  Heights heights_;
  const Bundle& bundle_;

  bool isCPUGraphShown_ = false;
  DisplayedCores cores_;
  Property<const CPUData*> CPUData_;
};

}  // namespace vel
