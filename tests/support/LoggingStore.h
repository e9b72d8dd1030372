// The module's settings in memory; what is written is logged, not kept.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/PreferencesStore.h"

namespace vel::test {

struct LoggingStore : PreferencesStore {
  explicit LoggingStore(std::vector<std::string>& storeLog) : log(storeLog) {}

  [[nodiscard]] std::optional<std::int64_t> objectForKey(std::string_view key,
                                                         std::string_view id) const override {
    EXPECT_EQ(id, "org.velbar.cpu");
    const auto value = values.find(key);
    return value == values.end() ? std::nullopt : std::optional(value->second);
  }
  void setObject(std::int64_t value, std::string_view key, std::string_view id) override {
    EXPECT_EQ(id, "org.velbar.cpu");
    log.push_back(std::string(key) + " = " + std::to_string(value));
  }

  std::map<std::string, std::int64_t, std::less<>> values;
  std::vector<std::string>& log;
};

}  // namespace vel::test
