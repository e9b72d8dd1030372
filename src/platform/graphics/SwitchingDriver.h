// The driver that switches between an integrated and a discrete graphics processor, called as the
// module calls it: by numbered methods with scalar arguments.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace vel {

/// May be used on any thread. No operation throws.
class SwitchingDriver {
 public:
  using Service = std::uint32_t;
  using Connection = std::uint32_t;  ///< never 0

  SwitchingDriver() = default;
  virtual ~SwitchingDriver() = default;
  SwitchingDriver(const SwitchingDriver&) = delete;
  SwitchingDriver& operator=(const SwitchingDriver&) = delete;

  /// The driver's services of a class, none on a machine that has nothing to switch. Nothing when
  /// they cannot be looked for.
  virtual std::optional<std::vector<Service>> matchingServices(std::string_view serviceClass) = 0;

  /// A new connection; nothing when it is refused.
  virtual std::optional<Connection> open(Service service, std::uint32_t type) = 0;

  /// Returns 0, or another status and `output` as it was. Selectors (the numbers are in
  /// SwitchingFeatures.h), with the scalars that they take:
  ///
  /// - 0, 1: starts, stops the driver's side of the connection;
  /// - 2: (1, feature, value) sets a feature;
  /// - 3: (1, feature) reads a feature into one scalar of output.
  virtual int callScalarMethod(Connection connection, std::uint32_t selector,
                               std::span<const std::uint64_t> input,
                               std::span<std::uint64_t> output) = 0;

  virtual void close(Connection connection) = 0;
};

}  // namespace vel
