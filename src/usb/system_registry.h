#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "usb/interface_report.h"
#include "usb/usb.h"

namespace usb {

/// The devices of this machine, and how its system lets programs reach them.
class SystemRegistry : public DeviceRegistry {
 public:
    /// Looks at the first device at `locationId` (see usb::locationId(), which may give a hub and a camera
    /// the same) that has a VideoControl interface: opens the file and closes it again, but sends the camera
    /// no request and moves nothing. Nothing when there is no such device.
    [[nodiscard]] virtual std::optional<InterfaceReport> inspectInterface(std::uint32_t locationId) const = 0;
};

/// A registry of the operating system that this is built for; src/usb/CMakeLists.txt chooses it. Never null.
[[nodiscard]] std::unique_ptr<SystemRegistry> makeSystemRegistry();

}  // namespace usb
