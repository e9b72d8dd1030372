// The utilities of the running desktop, in place of those that the module asks for.
#pragma once

#include <memory>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Clock.h"
#include "platform/windowing/Workspace.h"

namespace vel {

struct Utilities;

/// Knows three paths, /Applications/Utilities/{Activity Monitor,Console,Terminal}.app, for the
/// desktop's system monitor, log viewer and terminal. Anything else does not exist. Which
/// application it is: Utilities.h.
///
/// Main thread only. Nothing is looked up before it is asked for. What was found is good for a
/// second, so that a menu costs one look and the next menu has what has been installed since.
class DesktopWorkspace : public Workspace {
 public:
  /// `texts`, which may be null, outlives the workspace.
  explicit DesktopWorkspace(const Bundle* texts,
                            std::unique_ptr<const Clock> clock = std::make_unique<SystemClock>());
  ~DesktopWorkspace() override;

  [[nodiscard]] std::optional<Image> iconForFile(const std::string& path) override;
  [[nodiscard]] Opener openerOfFile(const std::string& path) override;
  bool openFile(const std::string& path) override;

 private:
  const Utilities& utilities();

  const Bundle* texts_;
  std::unique_ptr<const Clock> clock_;
  std::unique_ptr<const Utilities> found_;
  double foundAt_ = 0;
};

}  // namespace vel
