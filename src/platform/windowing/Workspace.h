// The desktop's applications, as the module asks for them: by the path of an application.
#pragma once

#include <optional>
#include <string>

#include "platform/windowing/Menu.h"

namespace vel {

/// A desktop without an application at the path may stand in another that serves the same purpose.
class Workspace {
 public:
  struct Opener {
    bool exists = false;
    std::string note;  ///< the application's name, or why there is none
  };

  Workspace() = default;
  virtual ~Workspace() = default;
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  [[nodiscard]] virtual std::optional<Image> iconForFile(const std::string& path) = 0;
  [[nodiscard]] virtual Opener openerOfFile(const std::string& path) = 0;
  /// Launches the application. False when that fails.
  virtual bool openFile(const std::string& path) = 0;
};

}  // namespace vel
