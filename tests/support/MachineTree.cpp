// A machine's procfs and sysfs as ordinary files in a temporary directory.
#include "support/MachineTree.h"

#include <fstream>
#include <stdexcept>

namespace vel::test {

namespace fs = std::filesystem;

MachineTree::MachineTree(const std::string& fixture) {
  const fs::path path = fs::path(VEL_FIXTURES) / (fixture + ".tree");
  std::ifstream lines(path);
  if (!lines) {
    throw std::runtime_error(path.string() + ": cannot be read");
  }
  std::string title;
  std::string content;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("==> ")) {
      content += line + '\n';
      continue;
    }
    addSection(title, content);
    title = line;
    content.clear();
  }
  addSection(title, content);
}

void MachineTree::addSection(std::string_view title, std::string_view content) const {
  if (title.empty()) {
    return;  // the remarks before the first section
  }
  const std::string_view path = title.substr(4, title.find(' ', 4) - 4);
  if (title.ends_with("(no newline) <==")) {
    content.remove_suffix(1);
  }
  if (path.ends_with('/')) {
    fs::create_directories(absolute(path));
  } else {
    write(path, content);
  }
}

void MachineTree::write(const fs::path& path, std::string_view content) const {
  const fs::path file = absolute(path);
  fs::create_directories(file.parent_path());
  std::ofstream stream(file);
  if (!(stream << content).flush()) {
    throw std::runtime_error(file.string() + ": cannot be written");
  }
}

}  // namespace vel::test
