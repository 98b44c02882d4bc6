#include "usb/libusb/libusb_registry.h"

#include <algorithm>
#include <array>
#include <span>
#include <tuple>
#include <utility>

#include "usb/libusb/libusb_handles.h"
#include "usb/libusb/libusb_video_control.h"
#include "usb/libusb/sysfs_name.h"

namespace usb {

namespace {

/// A list of devices and the references that it holds.
class DeviceList {
 public:
    explicit DeviceList(libusb_context *context) : count_(libusb_get_device_list(context, &first_)) {}
    ~DeviceList() {
        if (first_ != nullptr) libusb_free_device_list(first_, 1);
    }
    DeviceList(const DeviceList &) = delete;
    DeviceList &operator=(const DeviceList &) = delete;

    [[nodiscard]] bool isValid() const { return count_ >= 0; }
    [[nodiscard]] std::span<libusb_device *const> items() const {
        return {first_, static_cast<std::size_t>(std::max<ssize_t>(count_, 0))};
    }

 private:
    libusb_device **first_ = nullptr;
    ssize_t count_ = 0;
};

/// The path of a device, root port first: empty for a root hub, nothing when libusb cannot tell.
std::optional<std::vector<std::uint8_t>> portsOf(libusb_device *device) {
    constexpr std::size_t kDeepest = 7;  // what libusb asks for: USB allows six
    std::array<std::uint8_t, kDeepest> ports{};
    const int count = libusb_get_port_numbers(device, ports.data(), static_cast<int>(ports.size()));
    if (count < 0) return std::nullopt;
    return std::vector<std::uint8_t>(ports.begin(), ports.begin() + count);
}

class LibusbDevice : public Device {
 public:
    explicit LibusbDevice(LibusbDeviceRef device)
        : device_(std::move(device)),
          bus_(libusb_get_bus_number(device_.get())),
          ports_(portsOf(device_.get())) {
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(device_.get(), &descriptor) != LIBUSB_SUCCESS) return;
        vendorId_ = descriptor.idVendor;
        productId_ = descriptor.idProduct;
    }

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const override { return vendorId_; }
    [[nodiscard]] std::optional<std::uint16_t> productId() const override { return productId_; }

    [[nodiscard]] std::optional<std::uint32_t> locationId() const override {
        if (!ports_) return std::nullopt;
        return usb::locationId(bus_, *ports_);
    }

    [[nodiscard]] std::optional<std::string> registryName() const override {
        if (!ports_) return std::nullopt;
        return productNameFromSysfs(bus_, *ports_);
    }

    [[nodiscard]] std::unique_ptr<VideoControl> videoControl() const override {
        return findVideoControl(device_);
    }

    [[nodiscard]] bool standsBefore(const LibusbDevice &other) const {
        return std::tie(bus_, ports_) < std::tie(other.bus_, other.ports_);
    }

 private:
    LibusbDeviceRef device_;
    std::uint8_t bus_;
    std::optional<std::vector<std::uint8_t>> ports_;
    std::optional<std::uint16_t> vendorId_;
    std::optional<std::uint16_t> productId_;
};

}  // namespace

LibusbRegistry::LibusbRegistry() : context_(makeLibusbContext()) {}

std::optional<std::vector<std::shared_ptr<const Device>>> LibusbRegistry::devices() const {
    if (!context_) return std::nullopt;
    const DeviceList list(context_.get());
    if (!list.isValid()) return std::nullopt;

    std::vector<std::shared_ptr<const LibusbDevice>> found;
    for (libusb_device *device : list.items())
        found.push_back(std::make_shared<LibusbDevice>(makeDeviceRef(context_, device)));

    // libusb's own order depends on what was plugged in last.
    std::ranges::sort(found, [](const auto &a, const auto &b) { return a->standsBefore(*b); });
    return std::vector<std::shared_ptr<const Device>>(found.begin(), found.end());
}

}  // namespace usb
