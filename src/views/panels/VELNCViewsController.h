// The view controller of the notification-centre widget, which shows what its nib holds.
#pragma once

#include <memory>
#include <string>

#include "module/ViewControllers.h"
#include "platform/windowing/Nib.h"

namespace vel {

class VELNCViewsController : public WidgetViewController {
 public:
  /// `bundle` has the nib and outlives the controller.
  VELNCViewsController(std::string nib, const Bundle& bundle);

  [[nodiscard]] const std::string& bundleIdentifier() const { return bundleIdentifier_; }
  void setBundleIdentifier(const std::string& identifier) override {
    bundleIdentifier_ = identifier;
  }
  void loadView() override;
  [[nodiscard]] View* view() const override { return view_; }
  /// The widget shows no readings.
  void updateViews() override {}

 private:
  std::string nibName_;
  const Bundle& bundle_;
  std::string bundleIdentifier_;
  std::unique_ptr<Nib> nib_;
  View* view_ = nullptr;
};

}  // namespace vel
