#include "usb/libusb/libusb_device.h"

#include <array>
#include <tuple>
#include <utility>

#include "usb/libusb/libusb_video_control.h"
#include "usb/libusb/sysfs_name.h"

namespace usb {

namespace {

std::optional<std::vector<std::uint8_t>> portsOf(libusb_device *device) {
    constexpr std::size_t kDeepest = 7;  // what libusb asks for: USB allows six
    std::array<std::uint8_t, kDeepest> ports{};
    const int count = libusb_get_port_numbers(device, ports.data(), static_cast<int>(ports.size()));
    if (count < 0) return std::nullopt;
    return std::vector<std::uint8_t>(ports.begin(), ports.begin() + count);
}

}  // namespace

LibusbDevice::LibusbDevice(LibusbDeviceRef device)
    : device_(std::move(device)),
      bus_(libusb_get_bus_number(device_.get())),
      deviceNumber_(libusb_get_device_address(device_.get())),
      ports_(portsOf(device_.get())) {
    libusb_device_descriptor descriptor{};
    if (libusb_get_device_descriptor(device_.get(), &descriptor) != LIBUSB_SUCCESS) return;
    vendorId_ = descriptor.idVendor;
    productId_ = descriptor.idProduct;
}

std::optional<std::uint32_t> LibusbDevice::locationId() const {
    if (!ports_) return std::nullopt;
    return usb::locationId(bus_, *ports_);
}

std::optional<std::string> LibusbDevice::registryName() const {
    if (!ports_) return std::nullopt;
    return productNameFromSysfs(bus_, *ports_);
}

std::unique_ptr<VideoControl> LibusbDevice::videoControl() const {
    return findVideoControl(device_);
}

bool LibusbDevice::standsBefore(const LibusbDevice &other) const {
    return std::tie(bus_, ports_) < std::tie(other.bus_, other.ports_);
}

}  // namespace usb
