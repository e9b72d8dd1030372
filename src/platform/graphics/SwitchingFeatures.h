// The numbers in which one speaks to a switching driver.
#pragma once

#include <cstdint>
#include <string_view>

namespace vel::switching {

inline constexpr std::string_view kServiceClass = "AppleGraphicsControl";

/// The first scalar of every call about a feature.
inline constexpr std::uint64_t kFeatureCall = 1;

namespace selector {

inline constexpr std::uint32_t start = 0;
inline constexpr std::uint32_t stop = 1;
inline constexpr std::uint32_t setFeature = 2;
inline constexpr std::uint32_t getFeature = 3;

}  // namespace selector

namespace feature {

inline constexpr std::uint64_t leaveDynamic = 0;
inline constexpr std::uint64_t enterDynamic = 1;
inline constexpr std::uint64_t switchNow = 2;         ///< set to 0
inline constexpr std::uint64_t dynamicSwitching = 4;  ///< 0 off
inline constexpr std::uint64_t switchPolicy = 5;
inline constexpr std::uint64_t integratedInUse = 7;  ///< 0 no; only read

}  // namespace feature

// Policies. Under the old style a switch waits until programs let go of the displays.
inline constexpr std::uint64_t kNewStylePolicy = 0;
inline constexpr std::uint64_t kOldStylePolicy = 2;

}  // namespace vel::switching
