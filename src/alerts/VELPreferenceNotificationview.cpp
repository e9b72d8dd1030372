#include "alerts/VELPreferenceNotificationview.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "platform/host/Broadcasts.h"
#include "text/Localisation.h"

namespace vel {
namespace {

namespace key {

constexpr std::string_view isNotifyMoreThan = "isNotifyMoreThan";
constexpr std::string_view notifyMoreThanValue = "NotifyMoreThanValue";
constexpr std::string_view notifyTimeValueMoreThan = "NotifyTimeValueMoreThan";
constexpr std::string_view gfxGPUCardSwitch = "gfxGPUCardSwitch";

}  // namespace key

constexpr std::int64_t kDefaultThreshold = 30;
constexpr std::int64_t kDefaultMinutes = 10;
constexpr double kSecondsBetweenAlerts = 120.0;
constexpr std::int64_t kNoGPUReported = -1;

std::int64_t tagOf(const PopUpButton& popUp) {
  return popUp.selectedTag().value_or(0);
}

/// As the rankings call it; by the file that it runs where it is in no list.
std::string processNameForPid(std::int32_t pid) {
  Kernel& kernel = Platform::current().kernel;
  if (std::optional<std::string> name = kernel.processName(pid)) {
    return std::move(*name);
  }
  const std::string path = kernel.executablePath(pid).value_or("");
  return path.substr(path.rfind('/') + 1);  // The whole without a "/", as npos + 1 is 0.
}

/// The format with the text in place of its "%@". Whatever the text has of that kind stays.
std::string filled(std::string_view format, std::string_view text) {
  constexpr std::string_view kPlace = "%@";
  std::string result(format);
  if (const auto place = result.find(kPlace); place != std::string::npos) {
    result.replace(place, kPlace.size(), text);
  }
  return result;
}

}  // namespace

std::shared_ptr<VELPreferenceNotificationview> VELPreferenceNotificationview::fromNib(
    Nib& nib, const Bundle& bundle, Later later) {
  // All are asked for before any is missed, so that the host hears of every one.
  auto* view = nib.outlet<View>("preferenceNotificationview");
  auto* alert = nib.outlet<Button>("btnNotifyMoreThan");
  auto* threshold = nib.outlet<PopUpButton>("popNotifyMoreThanValue");
  auto* duration = nib.outlet<PopUpButton>("popTimeWhereValueMoreThan");
  auto* gpu = nib.outlet<Button>("btnNotifygfxGPUCardSwitch");
  if (view == nullptr || alert == nullptr || threshold == nullptr || duration == nullptr ||
      gpu == nullptr) {
    return nullptr;
  }
  return std::make_shared<VELPreferenceNotificationview>(
      Outlets{*view, *alert, *threshold, *duration, *gpu}, bundle, std::move(later));
}

VELPreferenceNotificationview::VELPreferenceNotificationview(const Outlets& outlets,
                                                             const Bundle& bundle, Later later)
    : notificationCenter_(Platform::current().notificationCenter),
      userNotificationCenter_(Platform::current().userNotificationCenter),
      outlets_(outlets),
      bundle_(bundle),
      later_(std::move(later)) {}

VELPreferenceNotificationview::~VELPreferenceNotificationview() {
  userNotificationCenter_.setDelegate(nullptr);
}

void VELPreferenceNotificationview::awakeFromNib() {
  lastNotif_ = Platform::current().clock.now();
  userNotificationCenter_.setDelegate(this);
  gpuType_ = kNoGPUReported;
  outlets_.btnNotifyMoreThan.setAction([this] { actionNotifyMoreThan(); });
  outlets_.popNotifyMoreThanValue.setAction([this] { actionNotifyMoreThanValue(); });
  outlets_.popTimeWhereValueMoreThan.setAction([this] { actionTimeWhereValueMoreThan(); });
  outlets_.btnNotifygfxGPUCardSwitch.setAction([this] { actionNotifyGfxGPUCardSwitch(); });
}

bool VELPreferenceNotificationview::isActivated() const {
  return outlets_.btnNotifyMoreThan.state() != 0;
}

float VELPreferenceNotificationview::currentThresholdValue() const {
  return static_cast<float>(tagOf(outlets_.popNotifyMoreThanValue));
}

// --- Settings ---

void VELPreferenceNotificationview::setVelPreferencesDefault(PreferencesStore* store) {
  velPreferencesDefault_ = store;
  loadPreferences();
}

void VELPreferenceNotificationview::loadPreferences() {
  if (const auto state = read(key::isNotifyMoreThan)) {
    outlets_.btnNotifyMoreThan.setState(*state);
    enablePopUps();
  }
  outlets_.popNotifyMoreThanValue.selectItemWithTag(
      read(key::notifyMoreThanValue).value_or(kDefaultThreshold));
  notifyThresholdValue();
  outlets_.popTimeWhereValueMoreThan.selectItemWithTag(
      read(key::notifyTimeValueMoreThan).value_or(kDefaultMinutes));
  if (const auto state = read(key::gfxGPUCardSwitch)) {
    outlets_.btnNotifygfxGPUCardSwitch.setState(*state);
  }
}

void VELPreferenceNotificationview::notifyThresholdValue() {
  notificationCenter_.post(broadcast::notificationThresholdDidChange,
                           tagOf(outlets_.popNotifyMoreThanValue));
}

void VELPreferenceNotificationview::enablePopUps() {
  outlets_.popNotifyMoreThanValue.setEnabled(isActivated());
  outlets_.popTimeWhereValueMoreThan.setEnabled(isActivated());
}

std::optional<std::int64_t> VELPreferenceNotificationview::read(std::string_view key) const {
  return velPreferencesDefault_ == nullptr
             ? std::nullopt
             : velPreferencesDefault_->objectForKey(key, bundleIdentifier_);
}

void VELPreferenceNotificationview::write(std::int64_t value, std::string_view key) {
  if (velPreferencesDefault_ != nullptr) {
    velPreferencesDefault_->setObject(value, key, bundleIdentifier_);
  }
}

// --- The user's changes: what is saved is how the control stands when the work runs ---

void VELPreferenceNotificationview::actionNotifyMoreThan() {
  later_([this] { write(outlets_.btnNotifyMoreThan.state(), key::isNotifyMoreThan); });
  enablePopUps();
}

void VELPreferenceNotificationview::actionNotifyMoreThanValue() {
  later_([this] { write(tagOf(outlets_.popNotifyMoreThanValue), key::notifyMoreThanValue); });
  notifyThresholdValue();
}

void VELPreferenceNotificationview::actionTimeWhereValueMoreThan() {
  later_(
      [this] { write(tagOf(outlets_.popTimeWhereValueMoreThan), key::notifyTimeValueMoreThan); });
}

void VELPreferenceNotificationview::actionNotifyGfxGPUCardSwitch() {
  later_([this] { write(outlets_.btnNotifygfxGPUCardSwitch.state(), key::gfxGPUCardSwitch); });
}

// --- The CPU alert ---

void VELPreferenceNotificationview::updateNotificationStatus() {
  // A centre may let other work in while it delivers.
  if (!isActivated() || isProcessing_) {
    return;
  }
  isProcessing_ = true;
  const double now = Platform::current().clock.now();
  updateWatchList(now);
  alertOfOne(now);
  isProcessing_ = false;
}

void VELPreferenceNotificationview::updateWatchList(double now) {
  static const std::vector<std::string> none;
  const CPUData* record = CPUData_.get();
  const auto& current = record != nullptr && record->processesForNotification()
                            ? *record->processesForNotification()
                            : none;
  std::erase_if(dicoMonitored_, [&current](const auto& watched) {
    return std::find(current.begin(), current.end(), watched.first) == current.end();
  });
  for (const std::string& pid : current) {
    dicoMonitored_.try_emplace(pid, now);
  }
}

void VELPreferenceNotificationview::alertOfOne(double now) {
  const auto minutes = static_cast<double>(tagOf(outlets_.popTimeWhereValueMoreThan));
  const auto limit = static_cast<float>(minutes * 60.0);  // Seconds.
  // Of several the one that has waited longest: an alert starts a process's time again, so that
  // none keeps another from its turn.
  const auto longest =
      std::min_element(dicoMonitored_.begin(), dicoMonitored_.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  if (longest != dicoMonitored_.end() && now - longest->second > static_cast<double>(limit) &&
      now - lastNotif_ > kSecondsBetweenAlerts) {
    showNotification(alertText(longest->first));
    dicoMonitored_.erase(longest);
    lastNotif_ = now;
  }
}

std::string VELPreferenceNotificationview::alertText(const std::string& pid) const {
  std::int32_t number = 0;
  std::from_chars(pid.data(), pid.data() + pid.size(), number);
  return filled(VELLoc(bundle_, "%@ is using too much CPU"),
                processNameForPid(number) + " [" + pid + "]");
}

void VELPreferenceNotificationview::showNotification(const std::string& text) {
  userNotificationCenter_.deliverNotification(
      {.title = std::string(VELLoc(bundle_, "CPU Usage")),
       .informativeText = text,
       .hasDefaultSound = true,
       .actionButtonTitle = std::string(VELLoc(bundle_, "Close"))});
}

// --- The alert of a change of the graphics processor ---

void VELPreferenceNotificationview::setGfxGPUCardInUse(bool inUse) {
  gfxGPUCardInUse_ = inUse;
  outlets_.btnNotifygfxGPUCardSwitch.setHidden(!inUse);
}

void VELPreferenceNotificationview::setGpuType(std::int64_t type) {
  const std::int64_t last = gpuType_.exchange(type);
  if (last == type || last == kNoGPUReported) {
    return;
  }
  Platform::current().mainQueue.async([view = weak_from_this(), type] {
    if (const auto self = view.lock()) {
      self->alertOfGPU(type);
    }
  });
}

void VELPreferenceNotificationview::alertOfGPU(std::int64_t type) {
  if (outlets_.btnNotifygfxGPUCardSwitch.state() == 0) {
    return;
  }
  if (type == 0) {
    showNotificationForGPUType(VELLoc(bundle_, "Integrated GPU card now in use"));
  } else if (type == 1) {
    showNotificationForGPUType(VELLoc(bundle_, "Discrete GPU card now in use"));
  }
}

void VELPreferenceNotificationview::showNotificationForGPUType(std::string_view text) {
  userNotificationCenter_.deliverNotification({.title = std::string(VELLoc(bundle_, "GPU Changed")),
                                               .informativeText = std::string(text),
                                               .hasDefaultSound = true,
                                               .actionButtonTitle = std::nullopt});
}

}  // namespace vel
