#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "usb/libusb/libusb_handles.h"

namespace usb {

/// The ports on the way to a device, root port first; none for a root hub.
class PortPath {
 public:
    /// Nothing when libusb cannot tell.
    [[nodiscard]] static std::optional<PortPath> of(libusb_device *device);

    [[nodiscard]] std::span<const std::uint8_t> ports() const { return std::span(ports_).first(count_); }

    friend auto operator<=>(const PortPath &, const PortPath &) = default;

 private:
    static constexpr std::size_t kDeepest = 7;  // what libusb asks for: USB allows six

    std::array<std::uint8_t, kDeepest> ports_{};  // 0, which is no port, behind the last
    std::size_t count_ = 0;
};

/// A device as libusb lists it. Listing costs no request, no file and no memory of its own; whatever else is
/// asked of a device is read when it is asked.
class LibusbDevice {
 public:
    explicit LibusbDevice(LibusbDeviceRef device);

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const { return vendorId_; }
    [[nodiscard]] std::optional<std::uint16_t> productId() const { return productId_; }
    [[nodiscard]] std::optional<std::uint32_t> locationId() const;
    [[nodiscard]] std::optional<std::string> registryName() const;

    [[nodiscard]] std::uint8_t busNumber() const { return bus_; }
    [[nodiscard]] const std::optional<PortPath> &ports() const { return ports_; }
    /// Its address on the bus, another one each time that it is plugged in.
    [[nodiscard]] std::uint8_t deviceNumber() const { return deviceNumber_; }

    [[nodiscard]] const LibusbDeviceRef &reference() const { return device_; }

    /// By bus and port path.
    [[nodiscard]] bool standsBefore(const LibusbDevice &other) const;

 private:
    LibusbDeviceRef device_;
    std::uint8_t bus_;
    std::uint8_t deviceNumber_;
    std::optional<PortPath> ports_;
    std::optional<std::uint16_t> vendorId_;
    std::optional<std::uint16_t> productId_;
};

}  // namespace usb
