// The names of the change broadcasts on the default notification centre, and what each one's object
// holds.
#pragma once

#include <string_view>

namespace vel::broadcast {

/// No object. The number of logical processors has changed; posted on the refresh thread, during a
/// sample.
inline constexpr std::string_view needUpdateCoreInfo = "VEL_CPU_NEED_UPDATE_COREINFO";

/// 0 = average since each process started, 1 = share since the previous sample.
inline constexpr std::string_view top5Type = "VEL_CPU_Top5Type";

/// The alert threshold, in percent of one core.
inline constexpr std::string_view notificationThresholdDidChange =
    "VEL_CPU_NotificationThresholdDidChange";

/// 0 = one total, 1 = per physical core, 2 = per logical processor.
inline constexpr std::string_view coresDisplayed = "VEL_CPU_CoresDisplayed";

/// 0 = the panels' graph is hidden, 1 = shown.
inline constexpr std::string_view showGraph = "VEL_CPU_ShowGraph";

/// 1 = percentage text in the menu bar.
inline constexpr std::string_view iconStatusChanged = "VEL_CPU_IconStatusChanged";

/// The gauge style, from 0.
inline constexpr std::string_view menuBarGaugeType = "VEL_CPU_MenuBarGaugeType";

/// A bit set: 1 = percentage, 2 = gauge, 4 = three-letter label.
inline constexpr std::string_view iconSubItemsChanged = "VEL_CPU_IconSubItemsChanged";

/// 0 = GPU monitoring off, anything else = on.
inline constexpr std::string_view gfxGPUStatusChanged = "VEL_CPU_GFXGPUStatusChanged";

}  // namespace vel::broadcast
