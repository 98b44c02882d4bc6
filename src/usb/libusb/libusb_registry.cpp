#include "usb/libusb/libusb_registry.h"

#include <algorithm>
#include <span>

namespace usb {

namespace {

/// A list of devices and the references that it holds.
class DeviceList {
 public:
    explicit DeviceList(libusb_context *context) : count_(libusb_get_device_list(context, &first_)) {}
    ~DeviceList() { libusb_free_device_list(first_, 1); }
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

}  // namespace

LibusbRegistry::LibusbRegistry() : context_(makeLibusbContext()) {}

std::optional<std::vector<LibusbDevice>> LibusbRegistry::devices() const {
    if (!context_) return std::nullopt;
    const DeviceList list(context_.get());
    if (!list.isValid()) return std::nullopt;

    std::vector<LibusbDevice> found;
    found.reserve(list.items().size());
    for (libusb_device *device : list.items()) found.emplace_back(LibusbDeviceRef(context_, device));

    // libusb's own order depends on what was plugged in last.
    std::ranges::sort(found, [](const auto &a, const auto &b) { return a.standsBefore(b); });
    return found;
}

}  // namespace usb
