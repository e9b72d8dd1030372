// The widget kit: the name of a process, which can be ended from there.
#pragma once

#include <cstdint>

#include "platform/windowing/Controls.h"

namespace vel {

class VELTextFieldKillApp : public TextField {
 public:
  static constexpr const char* kNibClass = "VELTextFieldKillApp";

  /// The process that the text names, as of now. Below 1 for none.
  virtual void setPID(std::int64_t pid) = 0;
  [[nodiscard]] virtual std::int64_t pid() const = 0;
};

}  // namespace vel
