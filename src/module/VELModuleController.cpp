#include "module/VELModuleController.h"

#include <iterator>
#include <utility>

#include "platform/Platform.h"
#include "platform/host/Broadcasts.h"
#include "text/Localisation.h"

namespace vel {
namespace {

constexpr double kSecondsBetweenAlertChecks = 10.0;

template <typename Factory>
typename Factory::result_type create(const Factory& factory, const std::string& nib,
                                     const Bundle& bundle) {
  return factory ? factory(nib, bundle) : nullptr;
}

}  // namespace

VELModuleController::VELModuleController(const Bundle& bundle, ViewControllers viewControllers,
                                         std::unique_ptr<VELCPUProcessesInfo> processInfo)
    : bundle_(bundle),
      viewControllers_(std::move(viewControllers)),
      bundleIdentifier_(bundle.identifier()),
      modulemodelobj_(std::make_unique<VELModuleModel>(std::move(processInfo))) {
  Platform::current().notificationCenter.addObserver(
      this, broadcast::needUpdateCoreInfo,
      [this](const Notification& /*unused*/) { coreInfoDidChange(); });
}

VELModuleController::~VELModuleController() {
  Platform::current().notificationCenter.removeObserver(this);
  unbindVariables();
}

void VELModuleController::initMainApp() {
  viewcontroller_ = create(viewControllers_.main, "VELViewsController", bundle_);
  if (viewcontroller_) {
    viewcontroller_->setBundleIdentifier(bundleIdentifier_);
    viewcontroller_->loadView();
    viewcontroller_->updateBasicCpuCoresInformation(modulemodelobj_->cpuCoresInformation());
    bindVariables();
  }
  moduleUsed_ = Mode::mainApp;
}

void VELModuleController::initNCApp() {
  ncviewcontroller_ = create(viewControllers_.widget, "VELNCViewsController", bundle_);
  if (ncviewcontroller_) {
    ncviewcontroller_->setBundleIdentifier(bundleIdentifier_);
    ncviewcontroller_->loadView();
  }
  moduleUsed_ = Mode::notificationCenter;
}

void VELModuleController::bindVariables() {
  viewcontroller_->cpuData().bind(modulemodelobj_->cpuData());
}

void VELModuleController::unbindVariables() {
  if (viewcontroller_) {
    viewcontroller_->cpuData().unbind();
    // It may outlive the record.
    viewcontroller_->cpuData().set(nullptr);
  }
}

void VELModuleController::setVelPreferencesDefault(PreferencesStore* store) {
  velPreferencesDefault_ = store;
  if (viewcontroller_) {
    viewcontroller_->setVelPreferencesDefault(store);
  }
}

void VELModuleController::coreInfoDidChange() {
  const auto information = modulemodelobj_->cpuCoresInformation();
  if (viewcontroller_) {
    viewcontroller_->updateBasicCpuCoresInformation(information);
  }
}

// --- Views ---

View* VELModuleController::statusbarView() const {
  return viewcontroller_ ? viewcontroller_->statusbarview() : nullptr;
}

View* VELModuleController::statusbarCombinedView() const {
  return viewcontroller_ ? viewcontroller_->statusbarcompactview() : nullptr;
}

View* VELModuleController::statusbarStandAloneView() const {
  return viewcontroller_ ? viewcontroller_->statusbarExpandedview() : nullptr;
}

View* VELModuleController::notificationCenterView() const {
  return ncviewcontroller_ ? ncviewcontroller_->view() : nullptr;
}

View* VELModuleController::preferencesModuleView() const {
  return viewcontroller_ ? viewcontroller_->preferencesview() : nullptr;
}

View* VELModuleController::preferenceNotificationView() const {
  const AlertSettingsView* settings = alertSettings();
  return settings == nullptr ? nullptr : &settings->view();
}

AlertSettingsView* VELModuleController::alertSettings() const {
  return viewcontroller_ ? viewcontroller_->preferenceNotificationview() : nullptr;
}

void VELModuleController::notificationInforModelOfVisibleViews(const void* /*object*/) {
  modulemodelobj_->setIsNotificationCenterViewVisible(true);
  modulemodelobj_->setIsStatusCompactViewVisible(true);
  modulemodelobj_->setIsStatusExpandedViewVisible(true);
  modulemodelobj_->setIsStatusViewVisible(true);
}

// --- Menu ---

void VELModuleController::buildMenuActions() {
  dicoActions_ = {
      {"Open Activity Monitor...", "/Applications/Utilities/Activity Monitor.app"},
      {"Open Console...", "/Applications/Utilities/Console.app"},
      {"Open Terminal...", "/Applications/Utilities/Terminal.app"},
  };
}

std::unique_ptr<Menu> VELModuleController::moduleMenuPref() {
  if (dicoActions_.empty()) {
    buildMenuActions();
  }
  Workspace& workspace = Platform::current().workspace;
  auto menu = std::make_unique<Menu>();
  for (std::int64_t index = 0; const auto& [title, path] : dicoActions_) {
    MenuItem item;
    item.title = VELLoc(bundle_, title);
    item.action = [this](const MenuItem& sender) { actionOpenUtilities(sender); };
    item.tag = index++;
    item.mixedStateImage = workspace.iconForFile(path);
    const Workspace::Opener opener = workspace.openerOfFile(path);
    item.toolTip = opener.note;
    item.enabled = opener.exists;
    menu->addItem(std::move(item));
  }
  return menu;
}

void VELModuleController::actionOpenUtilities(const MenuItem& sender) const {
  if (sender.tag >= 0 && sender.tag < std::ssize(dicoActions_)) {
    Platform::current().workspace.openFile(dicoActions_[static_cast<std::size_t>(sender.tag)].path);
  }
}

// --- Refresh ---

void VELModuleController::updateModel() {
  if (isProcessing_) {
    return;
  }
  isProcessing_ = true;
  modulemodelobj_->updateModel();
  if (isPanelOnScreen()) {
    modulemodelobj_->updateTopProcess();
    if (isAlertCheckDue()) {
      seedThreshold();
      modulemodelobj_->updateTopProcessExtraNotif();
    }
  } else if (isAlertCheckDue()) {
    seedThreshold();
    modulemodelobj_->updateProcessOnlyNotif();
  }
}

void VELModuleController::updateViews() {
  if (moduleUsed_ == Mode::mainApp && viewcontroller_) {
    viewcontroller_->updateViews();
  } else if (moduleUsed_ == Mode::notificationCenter && ncviewcontroller_) {
    ncviewcontroller_->updateViews();
  }
  isProcessing_ = false;
}

bool VELModuleController::isPanelOnScreen() const {
  const auto shown = [](const View* view) { return view != nullptr && view->isWindowVisible(); };
  return shown(statusbarStandAloneView()) || shown(statusbarCombinedView());
}

bool VELModuleController::isAlertCheckDue() {
  const auto* settings = alertSettings();
  return settings != nullptr && settings->isActivated() && isRefreshTimeOk();
}

void VELModuleController::seedThreshold() {
  if (modulemodelobj_->currentThresholdValue() == 0.0F) {
    modulemodelobj_->setCurrentThresholdValue(alertSettings()->currentThresholdValue());
  }
}

bool VELModuleController::isRefreshTimeOk() {
  const auto& clock = Platform::current().clock;
  const double now = clock.now();
  if (!lastDate_) {
    lastDate_ = now;
    return true;
  }
  if (kSecondsBetweenAlertChecks > now - *lastDate_) {
    return false;
  }
  lastDate_ = clock.now();
  return true;
}

}  // namespace vel
