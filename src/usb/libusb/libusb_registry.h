#pragma once

#include <optional>
#include <vector>

#include "usb/libusb/libusb_device.h"

namespace usb {

/// The devices that libusb sees. Listing needs no rights: it reads what the kernel keeps about each device
/// and opens none. One libusb context serves the whole life of the registry, and of what came from it.
class LibusbRegistry {
 public:
    LibusbRegistry();

    /// By bus and port path. Nothing when libusb could not be initialised or its listing failed; an empty
    /// list where there is no device.
    [[nodiscard]] std::optional<std::vector<LibusbDevice>> devices() const;

 private:
    LibusbContext context_;
};

}  // namespace usb
