#include "host/terminal/JsonLines.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

namespace vel {
namespace {

/// Appends text rather than build a tree of values: on a large machine the record has thousands of
/// keys.
class JsonWriter : public CPUData::Visitor {
 public:
  JsonWriter(const UserOf& userOf, std::string& text) : userOf_(userOf), text_(text) {}

  void number(std::string_view key, float value) override {
    appendKey(key);
    appendFinite(value);
  }

  void duration(std::string_view key, const CalendarDifference& value) override {
    appendKey(key);
    text_ += R"({"month":)";
    appendNumber(value.month);
    text_ += R"(,"day":)";
    appendNumber(value.day);
    text_ += R"(,"hour":)";
    appendNumber(value.hour);
    text_ += R"(,"minute":)";
    appendNumber(value.minute);
    text_ += '}';
  }

  void processes(std::string_view key, const std::vector<ProcessEntry>& value) override {
    appendKey(key);
    appendArray(value, [this](const ProcessEntry& process) {
      text_ += '{';
      appendKey(ProcessEntry::kNameKey);
      appendString(process.name);
      appendKey(ProcessEntry::kPidKey);
      appendString(process.pid);
      appendKey(ProcessEntry::kAvgCpuTimeKey);
      appendString(process.avgCpuTime);
      appendKey("share");
      appendFinite(process.share);
      appendKey("processes");
      appendNumber(process.processes);
      appendKey("user");
      appendString(userOf_(process.pid));
      text_ += '}';
    });
  }

  void pids(std::string_view key, const std::vector<std::string>& value) override {
    appendKey(key);
    appendArray(value, [this](const std::string& pid) { appendString(pid); });
  }

 private:
  void appendComma() {
    if (text_.back() != '{' && text_.back() != '[') {
      text_ += ',';
    }
  }

  /// The keys are ours: none needs an escape.
  void appendKey(std::string_view key) {
    appendComma();
    text_.append(1, '"').append(key).append("\":");
  }

  void appendFinite(float value) {
    if (std::isfinite(value)) {
      appendNumber(value);
    } else {
      text_ += "null";
    }
  }

  template <typename Number>
  void appendNumber(Number value) {
    std::array<char, 32> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    text_.append(digits.data(), result.ptr);
  }

  void appendString(const std::string& value) {
    // ASCII alone, as a terminal obeys some of the control characters beyond it.
    text_ += nlohmann::json(value).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
  }

  template <typename Element, typename Append>
  void appendArray(const std::vector<Element>& elements, Append append) {
    text_ += '[';
    for (const Element& element : elements) {
      appendComma();
      append(element);
    }
    text_ += ']';
  }

  const UserOf& userOf_;
  std::string& text_;
};

}  // namespace

void writeJson(const CPUData& record, const UserOf& userOf, std::string& text) {
  text = "{";
  JsonWriter writer(userOf, text);
  record.visit(writer);
  text += '}';
}

void JsonLines::show(const CPUData& record) {
  writeJson(
      record, [this](const std::string& pid) { return users_.of(pid); }, line_);
  users_.forgetOthers();
  line_ += '\n';
  output_.write(line_);
}

}  // namespace vel
