#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "usb/interface_report.h"
#include "usb/libusb/libusb_registry.h"
#include "usb/system_registry.h"
#include "usb/usb.h"

namespace usb {

/// The devices of a Linux machine. libusb lists them; each VideoControl interface is reached through V4L2
/// while the kernel's driver holds it, and through libusb while nobody does: see LinuxVideoControl.
class LinuxRegistry : public SystemRegistry {
 public:
    [[nodiscard]] std::optional<std::vector<std::shared_ptr<const Device>>> devices() const override;

    [[nodiscard]] std::optional<InterfaceReport> inspectInterface(std::uint32_t locationId) const override;

 private:
    LibusbRegistry listing_;
};

}  // namespace usb
