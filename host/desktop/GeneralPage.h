// The preferences page of the host's own settings.
#pragma once

#include <QComboBox>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <optional>

#include "host/Appearance.h"
#include "host/HostSettings.h"
#include "host/desktop/Texts.h"

namespace vel {

class GeneralPage : public QWidget {
 public:
  struct Actions {
    std::function<void(std::int64_t milliseconds)> setRefreshInterval;
    std::function<void(Appearance)> setAppearance;
    std::function<void(PanelKind)> setPanel;
  };

  /// The actions are called after the user's changes, which the page has not kept anywhere.
  /// Without a panel it is not asked for.
  GeneralPage(const Texts& texts, std::int64_t refreshInterval, Appearance appearance,
              std::optional<PanelKind> panel, const Actions& actions);

  /// Shows what has been chosen elsewhere.
  void showPanel(PanelKind panel);

 private:
  QComboBox* panel_ = nullptr;
};

}  // namespace vel
