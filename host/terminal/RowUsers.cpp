#include "host/terminal/RowUsers.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace vel {

const std::string& RowUsers::of(const std::string& pid) {
  static const std::string kNobody = "-";
  std::int32_t number = 0;
  std::from_chars(pid.data(), pid.data() + pid.size(), number);
  // Of the last reading, so that nothing is read for it.
  const std::optional<ProcessRecord> record = kernel_.process(number);
  if (!record) {
    return kNobody;
  }
  const auto known = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) {
    return row.pid == number && row.start == record->startSeconds;
  });
  if (known != rows_.end()) {
    known->asked = true;
    return known->user;
  }
  std::string user = details_.user(number).value_or(kNobody);
  return rows_.emplace_back(Row{number, record->startSeconds, std::move(user)}).user;
}

void RowUsers::forgetOthers() {
  std::erase_if(rows_, [](const Row& row) { return !row.asked; });
  std::for_each(rows_.begin(), rows_.end(), [](Row& row) { row.asked = false; });
}

}  // namespace vel
