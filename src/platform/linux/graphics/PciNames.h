// Names of graphics processors, out of the PCI database.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/graphics/PciDevices.h"

namespace vel {

/// One for each of `ids`, vendor first: "NVIDIA GeForce GT 330M"; "Intel 8086:1234" for a device
/// that the database does not have, "10ff:1234" without the vendor too. `database` is its file, the
/// machine's own if it is empty.
///
/// Reads the whole database, some 20 ms, and keeps nothing of it.
std::vector<std::string> pciNames(const std::filesystem::path& database,
                                  std::span<const PciId> ids);

/// The vendor as people say it, of one as the database has it: what is in brackets up to a slash,
/// "AMD" of "Advanced Micro Devices, Inc. [AMD/ATI]"; otherwise without a comma and what follows
/// it, and without a legal form at the end, "Intel" of "Intel Corporation".
std::string_view shortVendor(std::string_view vendor);

/// The name that the device is sold under: what is in brackets at the end, "GeForce GT 330M" of
/// "GT216M [GeForce GT 330M]", where only a remark in parentheses may follow; otherwise the whole.
std::string_view marketingName(std::string_view device);

}  // namespace vel
