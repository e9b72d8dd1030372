#include "host/terminal/PlainLines.h"

#include <cstddef>
#include <optional>

#include "host/terminal/Uptime.h"
#include "platform/foundation/Locale.h"

namespace vel {
namespace {

std::string number(std::optional<float> value, double unit, int decimals, std::size_t width) {
  static const Locale english;
  const std::string text =
      value ? english.number(static_cast<double>(*value) / unit, decimals) : "-";
  return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

std::string share(const char* name, Readings::Share value) {
  return std::string(name) + " " + number(value, 0.01, 1, 5) + " %  ";
}

std::string average(std::optional<float> value) {
  return " " + number(value, 1.0, 2, 5);
}

std::string count(const char* name, std::optional<float> value) {
  return std::string("  ") + name + " " + number(value, 1.0, 0, 5);
}

}  // namespace

std::string plainLine(const Readings& readings) {
  return share("cpu", readings.total()) + share("user", readings.user) +
         share("system", readings.system) + share("nice", readings.nice) +
         share("idle", readings.idle) + "load" + average(readings.load[0]) +
         average(readings.load[1]) + average(readings.load[2]) + count("tasks", readings.tasks) +
         count("threads", readings.threads) + "  up " +
         uptimeText(readings.upTime, "%ldmo", "%ldd") + "\n";
}

void PlainLines::show(const CPUData& record) {
  readings_.read(record, {});
  output_.write(plainLine(readings_));
}

}  // namespace vel
