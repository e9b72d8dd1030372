// A temporary bundle for one nib, and what its loader tells.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/desktop/windowing/QtNib.h"
#include "support/TemporaryDirectory.h"

namespace vel::test {

/// A file whose root has the given children.
inline std::string uiWith(const std::string& children) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0"><class>Nib</class><widget class="QWidget" name="view">)" +
         children + "</widget></ui>";
}

struct NibInBundle : TemporaryDirectory {
  explicit NibInBundle(void (*registerClasses)(QtNibLoader&) = [](QtNibLoader&) {}) {
    registerClasses(loader);
  }

  /// Loads the file, if it is not empty, from a bundle with the given "Localizable" table.
  std::unique_ptr<Nib> load(const std::string& ui, const std::string& localizable = "") {
    std::filesystem::create_directory(path + "/en.lproj");
    std::ofstream(path + "/en.lproj/Localizable.strings") << localizable;
    std::ofstream(path + "/Info.strings") << "identifier=nib;";
    if (!ui.empty()) {
      std::ofstream(file) << ui;
    }
    return loader.load(Bundle::open(path, Locale(".", {"en"}), problems).value(), "Nib");
  }

  std::string file = path + "/Nib.ui";
  std::vector<std::string> problems;
  QtNibLoader loader{[this](const std::string& problem) { problems.push_back(problem); }};
};

}  // namespace vel::test
