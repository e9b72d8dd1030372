// A desktop without applications but those it is given.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/windowing/Workspace.h"

namespace vel {

class HeadlessWorkspace : public Workspace {
 public:
  struct Application {
    std::optional<Image> icon;
    Opener opener;
  };

  [[nodiscard]] std::optional<Image> iconForFile(const std::string& path) override {
    return applicationAt(path).icon;
  }
  [[nodiscard]] Opener openerOfFile(const std::string& path) override {
    return applicationAt(path).opener;
  }
  /// Succeeds where there is an opener.
  bool openFile(const std::string& path) override {
    openedPaths.push_back(path);
    return applicationAt(path).opener.exists;
  }

  std::map<std::string, Application> applications;  ///< by path
  std::vector<std::string> openedPaths;             ///< those that failed too

 private:
  [[nodiscard]] Application applicationAt(const std::string& path) const {
    const auto entry = applications.find(path);
    return entry == applications.end() ? Application{} : entry->second;
  }
};

}  // namespace vel
