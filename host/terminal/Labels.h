// The words on the display, in the user's language.
#pragma once

#include <string>

#include "platform/foundation/Bundle.h"

namespace vel {

struct Labels {
  /// From the host's bundle; without one, English.
  explicit Labels(const Bundle* bundle);

  std::wstring user;
  std::wstring system;
  std::wstring nice;
  std::wstring idle;
  std::wstring cpu;  ///< stands before a processor's number
  std::wstring load;
  std::wstring tasks;
  std::wstring threads;
  std::wstring upTime;
  std::wstring quit;  ///< what the key q does

  std::string monthFormat;  ///< "%ld" is the number of months
  std::string dayFormat;
};

}  // namespace vel
