// The preferences page of the host's own settings.
#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>

#include "host/Appearance.h"
#include "host/desktop/Texts.h"

namespace vel {

class GeneralPage : public QWidget {
 public:
  struct Actions {
    std::function<void(std::int64_t milliseconds)> setRefreshInterval;
    std::function<void(Appearance)> setAppearance;
  };

  /// The actions are called after the user's changes, which the page has not kept anywhere.
  GeneralPage(const Texts& texts, std::int64_t refreshInterval, Appearance appearance,
              const Actions& actions);
};

}  // namespace vel
