// Qt, set up for a program that is hardly ever looked at.
#pragma once

#include <QApplication>
#include <array>
#include <cstdint>
#include <string>

namespace vel {

/// One in a process, before anything else of Qt's. Velbar's own arguments are no business of Qt's.
class DesktopApplication {
 public:
  enum class Platform : std::uint8_t { display, offscreen };

  /// What Qt has to say is reported under `program`'s name.
  DesktopApplication(const char* program, Platform platform);

 private:
  std::string name_;
  int count_ = 1;
  std::array<char*, 2> values_;
  QApplication qt_;
};

}  // namespace vel
