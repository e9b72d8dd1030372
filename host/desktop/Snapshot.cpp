#include "host/desktop/Snapshot.h"

#include <QCoreApplication>
#include <QPixmap>
#include <array>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "host/desktop/BarWindow.h"
#include "host/desktop/GeneralPage.h"
#include "host/desktop/PanelWindow.h"
#include "host/desktop/PreferencesWindow.h"
#include "host/desktop/windowing/WidgetViews.h"
#include "platform/foundation/Clock.h"

namespace vel {
namespace {

/// Settings for one picture.
class Scene : public PreferencesStore {
 public:
  [[nodiscard]] std::optional<std::int64_t> objectForKey(
      std::string_view key, std::string_view /*bundleIdentifier*/) const override {
    const auto found = values_.find(key);
    return found != values_.end() ? std::optional(found->second) : std::nullopt;
  }
  void setObject(std::int64_t value, std::string_view key,
                 std::string_view /*bundleIdentifier*/) override {
    values_.insert_or_assign(std::string(key), value);
  }

 private:
  std::map<std::string, std::int64_t, std::less<>> values_;
};

struct Named {
  const char* name;
  std::int64_t value;
};

// The settings of the CPU module that change its looks, as its preferences write them.
constexpr std::array kGaugeTypes{Named{"bar", 0}, Named{"pie", 1}, Named{"segments", 2},
                                 Named{"ring", 3}};
constexpr std::array kCoreModes{Named{"total", 0}, Named{"cores", 1}, Named{"processors", 2}};
constexpr std::array kGraphModes{kCoreModes[0], kCoreModes[2]};
constexpr const char* kGaugeType = "gaugeType";
constexpr const char* kCoresDisplayed = "cpucoresdisplayed";
constexpr const char* kShowGraph = "showGraph";
constexpr std::array kAppearances{std::pair{"light", Appearance::light},
                                  std::pair{"dark", Appearance::dark}};

constexpr double kSecondsBetweenSamples = 0.5;
/// A graph's samples are near each other, as nobody likes to wait.
constexpr int kGraphSamples = 40;
constexpr double kSecondsBetweenGraphSamples = 0.025;

class Photographer {
 public:
  Photographer(std::filesystem::path directory, ModuleSession& session, const Texts& texts,
               Theme& theme)
      : directory_(std::move(directory)), session_(session), texts_(texts), theme_(theme) {}
  ~Photographer() { session_.module().setVelPreferencesDefault(nullptr); }
  Photographer(const Photographer&) = delete;
  Photographer& operator=(const Photographer&) = delete;

  void takeAll() {
    sample(kSecondsBetweenSamples);
    takePanels();
    for (const auto& [name, appearance] : kAppearances) {
      theme_.setAppearance(appearance);
      takeItem(name);
      takePreferences(name);
    }
  }

 private:
  void takePanels() {
    ModulePrincipal& module = session_.module();
    QWidget* compact = widgetOf(module.statusbarCombinedView());
    QWidget* expanded = widgetOf(module.statusbarStandAloneView());
    if (compact == nullptr || expanded == nullptr) {
      return;
    }
    PanelWindow window(*expanded, nullptr, {[] { return QRect(); }, [] {}});
    window.open();
    for (const Named& mode : kGraphModes) {
      window.setPanel(*expanded);
      set(kShowGraph, 1);
      set(kCoresDisplayed, mode.value);
      for (int i = 0; i < kGraphSamples; ++i) {
        sample(kSecondsBetweenGraphSamples);
      }
      sample(kSecondsBetweenSamples);
      takePanel(window, std::string("panel-expanded-graph-") + mode.name);
      window.setPanel(*compact);
      module.updateViews();
      takePanel(window, std::string("panel-compact-graph-") + mode.name);
    }
    set(kShowGraph, 0);
    takePanel(window, "panel-compact");
    window.setPanel(*expanded);
    takePanel(window, "panel-expanded");
  }

  void takePanel(PanelWindow& window, const std::string& name) {
    for (const auto& [appearanceName, appearance] : kAppearances) {
      theme_.setAppearance(appearance);
      settle();
      save(window, name + "-" + appearanceName);
    }
  }

  void takeItem(const std::string& appearance) {
    QWidget* item = widgetOf(session_.module().statusbarView());
    if (item == nullptr) {
      return;
    }
    BarWindow bar(*item, Edge::top, false, {});
    bar.show();
    for (const Named& type : kGaugeTypes) {
      for (const Named& mode : kCoreModes) {
        set(kGaugeType, type.value);
        set(kCoresDisplayed, mode.value);
        settle();
        session_.module().updateViews();
        settle();
        save(bar, std::string("item-") + type.name + "-" + mode.name + "-" + appearance);
      }
    }
  }

  void takePreferences(const std::string& appearance) {
    GeneralPage general(texts_, 1000, Appearance::followDesktop, PanelKind::expanded, {});
    PreferencesWindow window(texts_, session_.module(), general);
    set(kGaugeType, kGaugeTypes[0].value);
    set(kCoresDisplayed, kCoreModes[0].value);
    window.show();
    for (int page = 0; page < window.pages(); ++page) {
      window.showPage(page);
      settle();
      save(window, "preferences-" + std::to_string(page + 1) + "-" + appearance);
    }
  }

  void set(const char* key, std::int64_t value) {
    scene_.setObject(value, key, {});
    session_.module().setVelPreferencesDefault(&scene_);
  }

  /// The first sample's shares are averages since the machine was started.
  void sample(double secondsBefore) {
    SystemClock().sleep(secondsBefore);
    session_.module().updateModel();
    session_.mainQueue().drain();
    session_.module().updateViews();
  }

  /// What the views have handed over to later is done.
  void settle() {
    session_.mainQueue().drain();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
  }

  void save(QWidget& widget, const std::string& name) const {
    const std::filesystem::path file = directory_ / (name + ".png");
    if (!widget.grab().save(QString::fromStdString(file.string()), "PNG")) {
      throw std::runtime_error(file.string() + ": cannot be written");
    }
  }

  const std::filesystem::path directory_;
  ModuleSession& session_;
  const Texts& texts_;
  Theme& theme_;
  Scene scene_;
};

}  // namespace

void takeSnapshots(const std::filesystem::path& directory, ModuleSession& session,
                   const Texts& texts, Theme& theme) {
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (error) {
    throw std::runtime_error(directory.string() + ": " + error.message());
  }
  session.module().updateModel();
  session.module().updateViews();
  Photographer(directory, session, texts, theme).takeAll();
}

}  // namespace vel
