// The widget kit: a text in the menu bar.
#pragma once

#include <string>
#include <string_view>

#include "platform/windowing/View.h"

namespace vel {

/// Fits its own width to its text.
class VELMenuBarText : public View {
 public:
  static constexpr const char* kNibClass = "VELMenuBarText";

  virtual void setTextString(std::string_view text) = 0;
  /// The text shown.
  [[nodiscard]] virtual std::string stringValue() const = 0;
};

}  // namespace vel
