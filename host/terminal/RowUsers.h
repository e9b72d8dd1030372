// Whose the processes of the list are.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/linux/LinuxKernel.h"
#include "platform/linux/ProcessDetails.h"

namespace vel {

/// A process is looked up once, as long as it is asked about at every refresh.
class RowUsers {
 public:
  /// `kernel` outlives this.
  explicit RowUsers(LinuxKernel& kernel) : kernel_(kernel), details_(kernel.processDirectory()) {}

  /// The name of the user, or the number of one without a name; "-" where it is not known.
  [[nodiscard]] const std::string& of(const std::string& pid);

  /// All that have not been asked about since this was called last.
  void forgetOthers();

 private:
  struct Row {
    std::int32_t pid = 0;
    std::int64_t start = 0;
    std::string user;
    bool asked = true;
  };

  LinuxKernel& kernel_;
  ProcessDetails details_;
  std::vector<Row> rows_;
};

}  // namespace vel
