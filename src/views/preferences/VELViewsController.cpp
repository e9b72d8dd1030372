#include "views/preferences/VELViewsController.h"

#include <array>
#include <utility>

#include "platform/Platform.h"
#include "platform/host/Broadcasts.h"
#include "views/menubar/SubItems.h"

namespace vel {
namespace {

namespace key {

constexpr std::string_view showDisplay = "showDisplay";
constexpr std::string_view subItemsDisplayed = "subItemsDisplayed";
constexpr std::string_view showGraph = "showGraph";
constexpr std::string_view gaugeType = "gaugeType";
constexpr std::string_view cpuTop5Type = "cpuTop5Type";
constexpr std::string_view cpucoresdisplayed = "cpucoresdisplayed";
constexpr std::string_view gfxGPU = "gfxGPU";

}  // namespace key

/// The cell of the matrix that stands for a percentage in the menu bar.
constexpr std::int64_t kPercentageShown = 1;

std::int64_t valueOf(const Control& control) {
  switch (control.controlClass()) {
    case ControlClass::matrix:
      return static_cast<const Matrix&>(control).selectedTag().value_or(0);
    case ControlClass::popUpButton:
      return static_cast<const PopUpButton&>(control).selectedTag().value_or(0);
    case ControlClass::button:
      return static_cast<const Button&>(control).state();
    case ControlClass::other:
      break;
  }
  return 0;
}

}  // namespace

VELViewsController::VELViewsController(std::string nib, const Bundle& bundle)
    : notificationCenter_(Platform::current().notificationCenter),
      nibName_(std::move(nib)),
      bundle_(bundle) {}

VELViewsController::~VELViewsController() {
  if (gfxObject_) {
    // Else it would be kept, and go on telling.
    gfxObject_->deActivateGPUMonitoring();
  }
  notificationCenter_.removeObserver(this);
}

void VELViewsController::setBundleIdentifier(const std::string& identifier) {
  bundleIdentifier_ = identifier;
  if (preferenceNotificationview_) {
    preferenceNotificationview_->setBundleIdentifier(identifier);
  }
}

void VELViewsController::loadView() {
  nib_ = Platform::current().nibLoader.load(bundle_, nibName_);
  if (!nib_) {
    return;
  }
  const auto outlets = connect(*nib_);
  const auto item = VELStatusbarview::fromNib(*nib_, bundle_);
  const auto compact = VELStatusbarCompactview::fromNib(*nib_, bundle_);
  const auto expanded = VELStatusbarExpandedview::fromNib(*nib_, bundle_);
  const auto alerts = VELPreferenceNotificationview::fromNib(
      *nib_, bundle_, [this](std::function<void()> work) { later(std::move(work)); });
  if (!outlets || !item || !compact || !expanded || !alerts) {
    return;
  }
  outlets_.emplace(*outlets);
  statusbarview_ = item;
  statusbarcompactview_ = compact;
  statusbarExpandedview_ = expanded;
  preferenceNotificationview_ = alerts;
  connectActions();
  // The views first: they have to hear the broadcasts of the settings.
  statusbarview_->awakeFromNib();
  statusbarcompactview_->awakeFromNib();
  statusbarExpandedview_->awakeFromNib();
  preferenceNotificationview_->awakeFromNib();
  awakeFromNib();
}

std::optional<VELViewsController::Outlets> VELViewsController::connect(Nib& nib) {
  // All are asked for before any is missed, so that the host hears of every one.
  auto* preferences = nib.outlet<View>("preferencesview");
  auto* display = nib.outlet<Matrix>("showDisplayButton");
  auto* gauge = nib.outlet<Button>("showGauge");
  auto* moduleName = nib.outlet<Button>("showModuleName");
  auto* gaugeType = nib.outlet<PopUpButton>("popupGaugeType");
  auto* cores = nib.outlet<PopUpButton>("popupCPUCoresDisplayed");
  auto* top5Type = nib.outlet<PopUpButton>("popupCPUTop5Type");
  auto* graph = nib.outlet<Button>("btnShowGraph");
  auto* gpuCaption = nib.outlet<TextField>("gpugfxTxtField");
  auto* gpu = nib.outlet<Button>("gpugfxBtn");
  auto* histories = nib.outlet<VELGraphArraysMultiple>("grapharrayobjMultiple");
  if (preferences == nullptr || display == nullptr || gauge == nullptr || moduleName == nullptr ||
      gaugeType == nullptr || cores == nullptr || top5Type == nullptr || graph == nullptr ||
      gpuCaption == nullptr || gpu == nullptr || histories == nullptr) {
    return std::nullopt;
  }
  return Outlets{*preferences, *display, *gauge,      *moduleName, *gaugeType, *cores,
                 *top5Type,    *graph,   *gpuCaption, *gpu,        *histories};
}

void VELViewsController::connectActions() {
  const auto connect = [this](Control& control, void (VELViewsController::*action)()) {
    control.setAction([this, action] { (this->*action)(); });
  };
  connect(outlets_->showDisplayButton, &VELViewsController::actionSelectBarDisplay);
  connect(outlets_->btnShowGraph, &VELViewsController::actionSelectShowGraph);
  connect(outlets_->showModuleName, &VELViewsController::actionSelectShowLabel3Letters);
  connect(outlets_->showGauge, &VELViewsController::actionSelectShowGauge);
  connect(outlets_->popupGaugeType, &VELViewsController::actionSelectGaugeType);
  connect(outlets_->popupCPUTop5Type, &VELViewsController::actionSelectCPUTop5Type);
  connect(outlets_->popupCPUCoresDisplayed, &VELViewsController::actionSelectCPUCoresDisplayed);
  connect(outlets_->gpugfxBtn, &VELViewsController::actionMonitorGfxGPU);
}

void VELViewsController::awakeFromNib() {
  notificationCenter_.addObserver(
      this, broadcast::coresDisplayed,
      [this](const Notification& notification) { cores_.setType(notification.integerValue()); });
  statusbarview_->cpuData().bind(CPUData_);
  statusbarcompactview_->cpuData().bind(CPUData_);
  statusbarExpandedview_->cpuData().bind(CPUData_);
  preferenceNotificationview_->cpuData().bind(CPUData_);
  gfxObject_ = std::make_shared<GFXObject>();
  gfxObject_->setDelegate(this);
  setGfxGPUCardInUse(gfxObject_->isDualGPUCard());
  loadPreferences();
}

void VELViewsController::setGfxGPUCardInUse(bool inUse) {
  gfxGPUCardInUse_ = inUse;
  outlets_->gpugfxTxtField.setHidden(!inUse);
  outlets_->gpugfxBtn.setHidden(!inUse);
  preferenceNotificationview_->setGfxGPUCardInUse(inUse);
}

/// Whichever the thread of the report is, both carry to the main thread what touches a view.
void VELViewsController::GPUCardTypeIs(std::int64_t type) {
  statusbarview_->setGputype(type);
  preferenceNotificationview_->setGpuType(type);
}

View* VELViewsController::statusbarview() const {
  return statusbarview_ ? &statusbarview_->view() : nullptr;
}

View* VELViewsController::statusbarcompactview() const {
  return statusbarcompactview_ ? &statusbarcompactview_->view() : nullptr;
}

View* VELViewsController::statusbarExpandedview() const {
  return statusbarExpandedview_ ? &statusbarExpandedview_->view() : nullptr;
}

View* VELViewsController::preferencesview() const {
  return outlets_ ? &outlets_->preferencesview : nullptr;
}

void VELViewsController::updateBasicCpuCoresInformation(const CpuCoresInformation& information) {
  if (outlets_) {
    statusbarview_->setCpuCoresInformation(information);
    cores_.setInformation(information);
    statusbarExpandedview_->setCpuCoresInformation(information);
    statusbarcompactview_->setCpuCoresInformation(information);
  }
}

void VELViewsController::updateViews() {
  if (outlets_) {
    cores_.forEachLoad(CPUData_.get(), [this](float load, std::int64_t index) {
      outlets_->grapharrayobjMultiple.addNewValueForGraphAtIndex(load * 100.0F, index);
    });
    statusbarview_->updateView();
    statusbarcompactview_->updateView();
    statusbarExpandedview_->updateView();
    preferenceNotificationview_->updateNotificationStatus();
  }
}

// --- Loading ---

void VELViewsController::setVelPreferencesDefault(PreferencesStore* store) {
  velPreferencesDefault_ = store;
  if (outlets_) {
    preferenceNotificationview_->setBundleIdentifier(bundleIdentifier_);
    preferenceNotificationview_->setVelPreferencesDefault(store);
    loadPreferences();
  }
}

void VELViewsController::loadPreferences() {
  selectMattrixButtonToState(outlets_->showDisplayButton,
                             read(key::showDisplay).value_or(kPercentageShown));
  const auto display = selectedMattrixButtonState(outlets_->showDisplayButton);

  const auto allButPercentage = subItem::gauge | subItem::moduleName;
  const auto subItems =
      read(key::subItemsDisplayed)
          .value_or(display == kPercentageShown ? allButPercentage | subItem::percentage
                                                : allButPercentage);
  outlets_->showGauge.setState((subItems & subItem::gauge) != 0 ? 1 : 0);
  outlets_->showModuleName.setState((subItems & subItem::moduleName) != 0 ? 1 : 0);
  selectSubItemsDisplayed();

  outlets_->btnShowGraph.setState(read(key::showGraph).value_or(0));
  selectedMattrixButtonState(outlets_->btnShowGraph);

  const auto loadPopUp = [this](PopUpButton& popUp, std::optional<std::int64_t> tag) {
    if (tag) {
      popUp.selectItemWithTag(*tag);
    }
    selectedMattrixButtonState(popUp);
  };
  loadPopUp(outlets_->popupGaugeType, read(key::gaugeType));
  loadPopUp(outlets_->popupCPUTop5Type, read(key::cpuTop5Type));
  loadPopUp(outlets_->popupCPUCoresDisplayed, read(key::cpucoresdisplayed).value_or(0));

  if (gfxGPUCardInUse_) {
    outlets_->gpugfxBtn.setState(read(key::gfxGPU).value_or(0));
    selectedMattrixButtonState(outlets_->gpugfxBtn);
  }
}

std::optional<std::int64_t> VELViewsController::read(std::string_view key) const {
  return velPreferencesDefault_ == nullptr
             ? std::nullopt
             : velPreferencesDefault_->objectForKey(key, bundleIdentifier_);
}

void VELViewsController::selectMattrixButtonToState(Matrix& matrix, std::int64_t tag) {
  matrix.deselectAllCells();
  matrix.selectCellWithTag(tag);
}

// --- Broadcasts ---

std::int64_t VELViewsController::selectedMattrixButtonState(const Control& control) {
  const std::int64_t value = valueOf(control);
  if (&control == &outlets_->gpugfxBtn) {
    value != 0 ? gfxObject_->activateGPUMonitoring() : gfxObject_->deActivateGPUMonitoring();
  }
  if (const std::string_view name = broadcastOf(control); !name.empty()) {
    notificationCenter_.post(name, value);
  }
  return value;
}

std::string_view VELViewsController::broadcastOf(const Control& control) const {
  const std::array<std::pair<const Control*, std::string_view>, 6> names = {{
      {&outlets_->showDisplayButton, broadcast::iconStatusChanged},
      {&outlets_->popupGaugeType, broadcast::menuBarGaugeType},
      {&outlets_->popupCPUTop5Type, broadcast::top5Type},
      {&outlets_->popupCPUCoresDisplayed, broadcast::coresDisplayed},
      {&outlets_->btnShowGraph, broadcast::showGraph},
      {&outlets_->gpugfxBtn, broadcast::gfxGPUStatusChanged},
  }};
  for (const auto& [named, name] : names) {
    if (named == &control) {
      return name;
    }
  }
  return {};
}

std::int64_t VELViewsController::selectSubItemsDisplayed() {
  const auto bit = [](bool set, std::int64_t value) { return set ? value : 0; };
  const std::int64_t subItems =
      bit(valueOf(outlets_->showDisplayButton) == kPercentageShown, subItem::percentage) +
      bit(outlets_->showGauge.state() != 0, subItem::gauge) +
      bit(outlets_->showModuleName.state() != 0, subItem::moduleName);
  notificationCenter_.post(broadcast::iconSubItemsChanged, subItems);
  return subItems;
}

// --- The user's changes ---

void VELViewsController::actionSelectBarDisplay() {
  later([this] {
    write(selectedMattrixButtonState(outlets_->showDisplayButton), key::showDisplay);
    write(selectSubItemsDisplayed(), key::subItemsDisplayed);
  });
}

void VELViewsController::actionSelectShowGraph() {
  changeButton(outlets_->btnShowGraph, key::showGraph);
}

void VELViewsController::actionSelectShowLabel3Letters() {
  changeSubItems();
}

void VELViewsController::actionSelectShowGauge() {
  changeSubItems();
}

void VELViewsController::actionSelectGaugeType() {
  changePopUpButton(outlets_->popupGaugeType, key::gaugeType);
}

void VELViewsController::actionSelectCPUTop5Type() {
  changePopUpButton(outlets_->popupCPUTop5Type, key::cpuTop5Type);
}

void VELViewsController::actionSelectCPUCoresDisplayed() {
  changePopUpButton(outlets_->popupCPUCoresDisplayed, key::cpucoresdisplayed);
}

void VELViewsController::actionMonitorGfxGPU() {
  changeButton(outlets_->gpugfxBtn, key::gfxGPU);
}

void VELViewsController::changeButton(const Button& button, std::string_view key) {
  later([this, &button, key] { write(selectedMattrixButtonState(button), key); });
}

void VELViewsController::changeSubItems() {
  later([this] { write(selectSubItemsDisplayed(), key::subItemsDisplayed); });
}

void VELViewsController::changePopUpButton(const PopUpButton& popUp, std::string_view key) {
  later([this, &popUp, key] { write(valueOf(popUp), key); });
  selectedMattrixButtonState(popUp);
}

void VELViewsController::later(std::function<void()> work) {
  Queue& mainQueue = Platform::current().mainQueue;
  // The controller is moved on, not copied: were the first task left with it, its thread might be
  // the one to destroy the views.
  Platform::current().globalQueue.async(
      [self = shared_from_this(), work = std::move(work), &mainQueue]() mutable {
        mainQueue.async([self = std::move(self), work = std::move(work)] { work(); });
      });
}

void VELViewsController::write(std::int64_t value, std::string_view key) {
  if (velPreferencesDefault_ != nullptr) {
    velPreferencesDefault_->setObject(value, key, bundleIdentifier_);
  }
}

}  // namespace vel
