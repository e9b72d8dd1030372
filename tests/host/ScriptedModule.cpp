// A module whose readings are written in its bundle's Info.strings: "processors" and the user share
// of all of them in percent, "share". With "creates" = "nothing" it has no principal object.
#include <limits>
#include <string>

#include "platform/host/ModulePrincipal.h"

namespace vel {
namespace {

class ScriptedModule : public ModulePrincipal {
 public:
  explicit ScriptedModule(const Bundle& bundle) {
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
  }

  void initMainApp() override { initialised_ = true; }
  void initNCApp() override {}
  void setVelPreferencesDefault(PreferencesStore* /*store*/) override {}
  [[nodiscard]] PreferencesStore* velPreferencesDefault() const override { return nullptr; }
  [[nodiscard]] std::string moduleName() const override { return "Scripted"; }
  [[nodiscard]] View* statusbarView() const override { return nullptr; }
  [[nodiscard]] View* statusbarCombinedView() const override { return nullptr; }
  [[nodiscard]] View* statusbarStandAloneView() const override { return nullptr; }
  [[nodiscard]] View* notificationCenterView() const override { return nullptr; }
  [[nodiscard]] View* preferencesModuleView() const override { return nullptr; }
  [[nodiscard]] View* preferenceNotificationView() const override { return nullptr; }
  [[nodiscard]] Menu* moduleMenuOption() const override { return nullptr; }
  void notificationInforModelOfVisibleViews(const void* /*object*/) override {}
  [[nodiscard]] const CPUData& readings() const override { return record_; }

  /// Counts the samples in "tasksCount", but only those of the contract's order.
  void updateModel() override {
    if (initialised_ && !processing_) {
      processing_ = true;
      record_.set(Reading::tasksCount, record_.number(Reading::tasksCount) + 1.0F);
    }
  }
  void updateViews() override { processing_ = false; }
  [[nodiscard]] bool isProcessing() const override { return processing_; }
  void setIsProcessing(bool processing) override { processing_ = processing; }

 private:
  CPUData record_;
  bool initialised_ = false;
  bool processing_ = false;
};

}  // namespace
}  // namespace vel

vel::ModulePrincipal* velCreatePrincipal(const vel::Bundle& bundle) noexcept {
  return bundle.info("creates") == "nothing" ? nullptr : new vel::ScriptedModule(bundle);
}
