// Graphics processors that are as the test says, and a driver that writes down what is asked of it.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/graphics/Displays.h"
#include "platform/graphics/SwitchingDriver.h"

namespace vel::test {

/// Safe to use on several threads but for its fields, which are set before.
class ScriptedSwitchingDriver : public SwitchingDriver {
 public:
  std::optional<std::vector<Service>> matchingServices(std::string_view serviceClass) override {
    write("find " + std::string(serviceClass));
    return services;
  }
  std::optional<Connection> open(Service service, std::uint32_t type) override {
    write("open " + std::to_string(service) + " " + std::to_string(type));
    return opens ? std::optional(++connection_) : std::nullopt;
  }
  int callScalarMethod(Connection connection, std::uint32_t selector,
                       std::span<const std::uint64_t> input,
                       std::span<std::uint64_t> output) override {
    std::string line = std::to_string(connection) + ": " + std::to_string(selector);
    for (const std::uint64_t scalar : input) {
      line += " " + std::to_string(scalar);
    }
    write(line);
    if (connection == 0 || failing == selector) {
      return -1;
    }
    if (selector == 3) {
      const std::lock_guard lock(mutex_);
      output[0] = features_[input[1]];
      ++answers;
    }
    return 0;
  }
  void close(Connection connection) override { write("close " + std::to_string(connection)); }

  void setFeature(std::uint64_t feature, std::uint64_t value) {
    const std::lock_guard lock(mutex_);
    features_[feature] = value;
  }

  void write(const std::string& line) {
    const std::lock_guard lock(mutex_);
    log_.push_back(line);
  }
  /// What has been asked since the last time, one line a call.
  std::vector<std::string> taken() {
    const std::lock_guard lock(mutex_);
    return std::exchange(log_, {});
  }

  std::optional<std::vector<Service>> services = std::vector<Service>();
  bool opens = true;
  std::optional<std::uint32_t> failing;  ///< a selector
  std::atomic<int> answers = 0;          ///< that have been given about features

 private:
  std::mutex mutex_;
  std::vector<std::string> log_;
  std::map<std::uint64_t, std::uint64_t> features_;
  Connection connection_ = 0;
};

/// Safe to use on several threads but for its fields.
class ScriptedDisplays : public Displays {
 public:
  std::optional<std::vector<Device>> matchingServices(std::string_view serviceClass) override {
    ++searches;
    if (serviceClass != "IOPCIDevice" || !searchable) {
      return std::nullopt;
    }
    std::vector<Device> found(devices.size());
    for (Device device = 0; Device & place : found) {
      place = device++;
    }
    return found;
  }
  std::optional<Properties> properties(Device device) override { return devices.at(device); }

  void registerReconfigurationCallback(ReconfigurationCallback callback, void* userInfo) override {
    const std::lock_guard lock(mutex_);
    if (std::find(callbacks_.begin(), callbacks_.end(), std::pair(callback, userInfo)) ==
        callbacks_.end()) {
      callbacks_.emplace_back(callback, userInfo);
    }
  }
  void removeReconfigurationCallback(ReconfigurationCallback callback, void* userInfo) override {
    const std::lock_guard lock(mutex_);
    std::erase(callbacks_, std::pair(callback, userInfo));
  }

  /// As the machine does, on the calling thread.
  void reconfigure(std::uint32_t flags = kSetModeFlag, std::uint32_t display = 1) {
    const std::lock_guard lock(mutex_);
    for (const auto& [callback, userInfo] : callbacks_) {
      callback(display, flags, userInfo);
    }
  }
  [[nodiscard]] std::size_t callbacks() {
    const std::lock_guard lock(mutex_);
    return callbacks_.size();
  }

  /// A display controller of that name.
  void addDisplay(std::string_view name) {
    devices.push_back(Properties{{"IOName", "display"},
                                 {"model", std::vector<std::uint8_t>(name.begin(), name.end())}});
  }

  std::vector<std::optional<Properties>> devices;
  bool searchable = true;
  int searches = 0;

 private:
  std::mutex mutex_;
  std::vector<std::pair<ReconfigurationCallback, void*>> callbacks_;
};

}  // namespace vel::test
