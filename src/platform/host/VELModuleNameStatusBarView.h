// The widget kit: a module's name in three letters.
#pragma once

#include <string_view>

#include "platform/host/VELColor.h"
#include "platform/windowing/View.h"

namespace vel {

class VELModuleNameStatusBarView : public View {
 public:
  static constexpr const char* kNibClass = "VELModuleNameStatusBarView";

  /// `color` must outlive the view, which follows its label colour.
  virtual void setColorObject(VELColor* color) = 0;
  virtual void setThreeLetterName(std::string_view name) = 0;
};

}  // namespace vel
