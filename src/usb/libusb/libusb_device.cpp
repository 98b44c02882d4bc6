#include "usb/libusb/libusb_device.h"

#include <tuple>
#include <utility>

#include "usb/libusb/sysfs_name.h"
#include "usb/usb.h"

namespace usb {

std::optional<PortPath> PortPath::of(libusb_device *device) {
    PortPath path;
    const int count =
        libusb_get_port_numbers(device, path.ports_.data(), static_cast<int>(path.ports_.size()));
    if (count < 0) return std::nullopt;
    path.count_ = static_cast<std::size_t>(count);
    return path;
}

LibusbDevice::LibusbDevice(LibusbDeviceRef device)
    : device_(std::move(device)),
      bus_(libusb_get_bus_number(device_.get())),
      deviceNumber_(libusb_get_device_address(device_.get())),
      ports_(PortPath::of(device_.get())) {
    libusb_device_descriptor descriptor{};
    if (libusb_get_device_descriptor(device_.get(), &descriptor) != LIBUSB_SUCCESS) return;
    vendorId_ = descriptor.idVendor;
    productId_ = descriptor.idProduct;
}

std::optional<std::uint32_t> LibusbDevice::locationId() const {
    if (!ports_) return std::nullopt;
    return usb::locationId(bus_, ports_->ports());
}

std::optional<std::string> LibusbDevice::registryName() const {
    if (!ports_) return std::nullopt;
    return productNameFromSysfs(bus_, ports_->ports());
}

bool LibusbDevice::standsBefore(const LibusbDevice &other) const {
    return std::tie(bus_, ports_) < std::tie(other.bus_, other.ports_);
}

}  // namespace usb
