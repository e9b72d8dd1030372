// A module whose readings are written in its bundle's Info.strings: "processors" and the user share
// of all of them in percent, "share". With "gauges", a number, it has an item, from the nib "Item".
// With "process", a pid, it has a panel, "panel" in that nib, and a list with that one as "job".
// With "alert" it notifies of that at its second refresh. With "creates" = "nothing" it has no
// principal object.
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "platform/Platform.h"
#include "platform/host/ModulePrincipal.h"
#include "platform/host/VELGaugeViewMultiple.h"
#include "platform/host/VELMenuBarText.h"
#include "platform/host/VELModuleNameStatusBarView.h"

namespace vel {
namespace {

class ScriptedModule : public ModulePrincipal, private UserNotificationCenterDelegate {
 public:
  explicit ScriptedModule(const Bundle& bundle) : bundle_(bundle) {
    const int processors = std::stoi(std::string(bundle.info("processors").value_or("0")));
    const float share = std::stof(std::string(bundle.info("share").value_or("0"))) / 100.0F;
    record_.set(Reading::userCPU, share);
    record_.set(Reading::systemCPU, 0.0F);
    record_.set(Reading::niceCPU, 0.0F);
    record_.set(Reading::threadsCount, std::numeric_limits<float>::quiet_NaN());
    for (int i = 0; i < processors; ++i) {
      record_.set(ProcessorReading::userCPUAll, static_cast<std::uint32_t>(i), share);
    }
    record_.setUpTime({0, 3, 4, 5});
    record_.setTopMemProcess({{"\x1b[31m\xff\n\"", "7", "1.5"}});
    if (const auto process = bundle_.info("process")) {
      record_.setTopMemProcess({{"first", "1", "9"}, {"job", std::string(*process), "1.5", 0, 3}});
    }
  }

  ~ScriptedModule() override { Platform::current().userNotificationCenter.setDelegate(nullptr); }

  void initMainApp() override {
    Platform::current().userNotificationCenter.setDelegate(this);
    initialised_ = true;
    nib_ = bundle_.info("gauges") ? Platform::current().nibLoader.load(bundle_, "Item") : nullptr;
    if (nib_) {
      gauges_ = nib_->outlet<VELGaugeViewMultiple>("gauges");
      text_ = nib_->outlet<VELMenuBarText>("text");
      nib_->outlet<VELModuleNameStatusBarView>("name")->setThreeLetterName("Scr");
    }
  }
  void initNCApp() override {}
  void setVelPreferencesDefault(PreferencesStore* /*store*/) override {}
  [[nodiscard]] PreferencesStore* velPreferencesDefault() const override { return nullptr; }
  [[nodiscard]] std::string moduleName() const override { return "Scripted"; }
  [[nodiscard]] View* statusbarView() const override {
    return nib_ ? nib_->outlet<View>("item") : nullptr;
  }
  [[nodiscard]] View* statusbarCombinedView() const override { return nullptr; }
  [[nodiscard]] View* statusbarStandAloneView() const override {
    return nib_ && bundle_.info("process") ? nib_->outlet<View>("panel") : nullptr;
  }
  [[nodiscard]] View* notificationCenterView() const override { return nullptr; }
  [[nodiscard]] View* preferencesModuleView() const override { return nullptr; }
  [[nodiscard]] View* preferenceNotificationView() const override { return nullptr; }
  [[nodiscard]] std::unique_ptr<Menu> moduleMenuOption() override { return nullptr; }
  [[nodiscard]] std::unique_ptr<Menu> moduleMenuPref() override { return nullptr; }
  void notificationInforModelOfVisibleViews(const void* /*object*/) override {}
  [[nodiscard]] const CPUData& readings() const override { return record_; }

  /// Counts the samples in "tasksCount", but only those of the contract's order. The gauges
  /// that a sample asks for come through the main queue.
  void updateModel() override {
    if (initialised_ && !processing_) {
      processing_ = true;
      record_.set(Reading::tasksCount, record_.number(Reading::tasksCount) + 1.0F);
      if (gauges_ != nullptr) {
        Platform::current().mainQueue.async([this] { gauges_->setNumberOfGauges(gauges()); });
      }
    }
  }
  void updateViews() override {
    processing_ = false;
    if (const auto alert = bundle_.info("alert");
        alert && record_.number(Reading::tasksCount) == 2.0F) {
      Platform::current().userNotificationCenter.deliverNotification(
          {"CPU", std::string(*alert), true, {}});
    }
    if (gauges_ != nullptr) {
      const float percent = record_.number(Reading::userCPU) * 100.0F;
      text_->setTextString(std::to_string(std::lround(percent)) + "%");
      for (std::int64_t i = 0; i < gauges(); ++i) {
        gauges_->currentValueForGaugeAtIndex(percent, i);
        gauges_->innerColorForGaugeAtIndex(percent > 70.0F ? redColor : Color{}, i);
      }
    }
  }
  [[nodiscard]] bool isProcessing() const override { return processing_; }
  void setIsProcessing(bool processing) override { processing_ = processing; }

 private:
  bool shouldPresentNotification(const UserNotification& /*notification*/) override { return true; }
  [[nodiscard]] std::int64_t gauges() const {
    return std::stoi(std::string(*bundle_.info("gauges")));
  }

  const Bundle& bundle_;
  CPUData record_;
  std::unique_ptr<Nib> nib_;
  VELGaugeViewMultiple* gauges_ = nullptr;
  VELMenuBarText* text_ = nullptr;
  bool initialised_ = false;
  bool processing_ = false;
};

}  // namespace
}  // namespace vel

vel::ModulePrincipal* velCreatePrincipal(const vel::Bundle& bundle) noexcept {
  return bundle.info("creates") == "nothing"
             ? nullptr
             : std::make_unique<vel::ScriptedModule>(bundle).release();
}
