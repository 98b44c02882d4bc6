#pragma once

#include <cstdint>
#include <optional>

#include "usb/interface_report.h"
#include "usb/libusb/libusb_registry.h"

namespace usb {

/// SystemRegistry::inspectInterface() among the devices that libusb lists: by the driver that sysfs names,
/// the files in /dev and the processes in /proc.
[[nodiscard]] std::optional<InterfaceReport> inspectInterface(const LibusbRegistry &registry,
                                                              std::uint32_t locationId);

}  // namespace usb
