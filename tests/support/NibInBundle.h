// A temporary bundle for one nib, and what its loader tells.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/TemporaryDirectory.h"
#include "host/desktop/windowing/QtNib.h"

namespace vel::test {

/// A file whose root has the given children.
inline std::string uiWith(const std::string& children) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0"><class>Nib</class><widget class="QWidget" name="view">)" +
         children + "</widget></ui>";
}

struct NibInBundle {
  /// Loads the file, if it is not empty, from a bundle with the given "Localizable" table.
  std::unique_ptr<Nib> load(const std::string& ui, const std::string& localizable = "") {
    std::filesystem::create_directory(directory.path + "/en.lproj");
    std::ofstream(directory.path + "/en.lproj/Localizable.strings") << localizable;
    std::ofstream(directory.path + "/Info.strings") << "identifier=nib;";
    if (!ui.empty()) {
      std::ofstream(path) << ui;
    }
    const auto bundle = Bundle::open(directory.path, Locale(".", {"en"}), problems);
    return loader.load(bundle.value(), "Nib");
  }

  TemporaryDirectory directory;
  std::string path = directory.path + "/Nib.ui";
  std::vector<std::string> problems;
  QtNibLoader loader{[this](const std::string& problem) { problems.push_back(problem); }};
};

}  // namespace vel::test
