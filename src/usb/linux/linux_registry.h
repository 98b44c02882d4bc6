#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "usb/libusb/libusb_registry.h"
#include "usb/usb.h"

namespace usb {

/// The devices of a Linux machine. libusb lists them; each VideoControl interface is reached through V4L2
/// while the kernel's driver holds it, and through libusb while nobody does: see LinuxVideoControl.
class LinuxRegistry : public DeviceRegistry {
 public:
    /// As LibusbRegistry::devices().
    [[nodiscard]] std::optional<std::vector<std::shared_ptr<const Device>>> devices() const override;

    /// The same devices as libusb lists them.
    [[nodiscard]] const LibusbRegistry &listing() const { return listing_; }

 private:
    LibusbRegistry listing_;
};

}  // namespace usb
