#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace usb {

/// The directory of the device in Linux's sysfs, whether or not it is there: ".../usb3" for the root hub of
/// bus 3, ".../3-1.4" for the device behind ports 1 and 4 of that bus.
[[nodiscard]] std::string sysfsDirectory(std::uint8_t bus, std::span<const std::uint8_t> ports);

/// The product name that the kernel read when the device was plugged in (Linux sysfs). Asking the device
/// itself would need it open, and with that rights that a listing must do without. UTF-8; absent when there
/// is none.
[[nodiscard]] std::optional<std::string> productNameFromSysfs(std::uint8_t bus,
                                                              std::span<const std::uint8_t> ports);

}  // namespace usb
