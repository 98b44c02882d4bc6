#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "usb/usb.h"

namespace support {

/// A registry of these devices in this order; nothing when `devices` is nothing.
struct ListedDevices : usb::DeviceRegistry {
    using Devices = std::optional<std::vector<std::shared_ptr<const usb::Device>>>;
    explicit ListedDevices(Devices listed) : present(std::move(listed)) {}
    Devices devices() const override { return present; }
    Devices present;
};

inline std::shared_ptr<const usb::DeviceRegistry> listing(ListedDevices::Devices devices) {
    return std::make_shared<ListedDevices>(std::move(devices));
}

}  // namespace support
