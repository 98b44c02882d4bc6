#include "usb/linux/linux_registry.h"

#include <utility>

#include "usb/linux/interface_inspection.h"
#include "usb/linux/linux_video_control.h"

namespace usb {

namespace {

class LinuxDevice : public Device {
 public:
    explicit LinuxDevice(LibusbDevice device) : device_(std::move(device)) {}

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const override { return device_.vendorId(); }
    [[nodiscard]] std::optional<std::uint16_t> productId() const override { return device_.productId(); }
    [[nodiscard]] std::optional<std::uint32_t> locationId() const override { return device_.locationId(); }
    [[nodiscard]] std::optional<std::string> registryName() const override { return device_.registryName(); }
    [[nodiscard]] std::unique_ptr<VideoControl> videoControl() const override {
        return findLinuxVideoControl(device_);
    }

 private:
    LibusbDevice device_;
};

}  // namespace

std::optional<std::vector<std::shared_ptr<const Device>>> LinuxRegistry::devices() const {
    auto listed = listing_.devices();
    if (!listed) return std::nullopt;

    // In one piece of memory, which lives until the last pointer into it goes.
    const auto devices = std::make_shared<std::vector<LinuxDevice>>();
    devices->reserve(listed->size());
    for (LibusbDevice &device : *listed) devices->emplace_back(std::move(device));

    std::vector<std::shared_ptr<const Device>> pointers;
    pointers.reserve(devices->size());
    for (const LinuxDevice &device : *devices) pointers.emplace_back(devices, &device);
    return pointers;
}

std::optional<InterfaceReport> LinuxRegistry::inspectInterface(std::uint32_t locationId) const {
    return usb::inspectInterface(listing_, locationId);
}

std::unique_ptr<SystemRegistry> makeSystemRegistry() {
    return std::make_unique<LinuxRegistry>();
}

}  // namespace usb
