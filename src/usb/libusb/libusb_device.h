#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "usb/libusb/libusb_handles.h"
#include "usb/usb.h"

namespace usb {

/// A device as libusb lists it.
class LibusbDevice : public Device {
 public:
    explicit LibusbDevice(LibusbDeviceRef device);

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const override { return vendorId_; }
    [[nodiscard]] std::optional<std::uint16_t> productId() const override { return productId_; }
    [[nodiscard]] std::optional<std::uint32_t> locationId() const override;
    [[nodiscard]] std::optional<std::string> registryName() const override;
    [[nodiscard]] std::unique_ptr<VideoControl> videoControl() const override;

    [[nodiscard]] std::uint8_t busNumber() const { return bus_; }
    /// The ports on the way to the device, root port first: empty for a root hub, nothing when libusb cannot
    /// tell.
    [[nodiscard]] const std::optional<std::vector<std::uint8_t>> &ports() const { return ports_; }
    /// Its address on the bus, another one each time that it is plugged in.
    [[nodiscard]] std::uint8_t deviceNumber() const { return deviceNumber_; }

    /// By bus and port path.
    [[nodiscard]] bool standsBefore(const LibusbDevice &other) const;

 private:
    LibusbDeviceRef device_;
    std::uint8_t bus_;
    std::uint8_t deviceNumber_;
    std::optional<std::vector<std::uint8_t>> ports_;
    std::optional<std::uint16_t> vendorId_;
    std::optional<std::uint16_t> productId_;
};

}  // namespace usb
