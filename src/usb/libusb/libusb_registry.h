#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "usb/libusb/libusb_device.h"
#include "usb/usb.h"

struct libusb_context;

namespace usb {

/// The devices that libusb sees. Listing needs no rights: it reads what the kernel keeps about each device
/// and opens none. One libusb context serves the whole life of the registry, and of what came from it.
class LibusbRegistry : public DeviceRegistry {
 public:
    LibusbRegistry();

    /// Nothing when libusb could not be initialised or its listing failed; an empty list where there is no
    /// device.
    [[nodiscard]] std::optional<std::vector<std::shared_ptr<const Device>>> devices() const override;

    /// The same devices with what libusb alone tells of them.
    [[nodiscard]] std::optional<std::vector<std::shared_ptr<const LibusbDevice>>> libusbDevices() const;

 private:
    std::shared_ptr<libusb_context> context_;
};

}  // namespace usb
