// Any bytes as a strings table: a fault has its place, and what comes out reads the same again.
#include <algorithm>
#include <iomanip>
#include <sstream>

#include "fuzz/Fuzzing.h"
#include "platform/foundation/StringsTable.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes = vel::fuzz::textOf(data, size);
  const vel::StringsTable table = vel::parseStrings(bytes);
  if (table.error) {
    const auto breaks =
        std::count(bytes.begin(), bytes.end(), '\n') + std::count(bytes.begin(), bytes.end(), '\r');
    const auto& [line, message] = *table.error;
    vel::fuzz::require(line >= 1 && line <= static_cast<std::size_t>(breaks) + 1);
    vel::fuzz::require(!message.empty() && message.find('\n') == std::string::npos);
  }
  std::ostringstream again;
  for (const auto& [key, value] : table.entries) {
    again << std::quoted(key) << '=' << std::quoted(value) << ';';
  }
  const vel::StringsTable reread = vel::parseStrings(again.str());
  vel::fuzz::require(!reread.error && reread.entries == table.entries);
  return 0;
}
