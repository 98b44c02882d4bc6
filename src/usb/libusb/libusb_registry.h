#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "usb/libusb/libusb_device.h"
#include "usb/usb.h"

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
    [[nodiscard]] std::optional<std::vector<LibusbDevice>> libusbDevices() const;

 private:
    LibusbContext context_;
};

/// Pointers to all of `devices`, which live in one piece of memory until the last pointer goes.
template <typename Kind>
[[nodiscard]] std::vector<std::shared_ptr<const Device>> shareAll(std::vector<Kind> devices) {
    const auto all = std::make_shared<const std::vector<Kind>>(std::move(devices));
    std::vector<std::shared_ptr<const Device>> pointers;
    pointers.reserve(all->size());
    for (const Kind &device : *all) pointers.emplace_back(all, &device);
    return pointers;
}

}  // namespace usb
