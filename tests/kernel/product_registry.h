#pragma once

#include <memory>
#include <stdexcept>

#include "usb/system_registry.h"
#include "uvc/uvc_controller.h"

namespace guest {

/// The camera library finds devices as it does in the product.
inline void useProductRegistry() {
    UVCController::useDeviceRegistry(usb::makeSystemRegistry());
}

/// The first camera that the registry lists.
inline std::shared_ptr<const usb::Device> cameraAmong(const usb::DeviceRegistry &registry) {
    const auto devices = registry.devices().value();
    for (const auto &device : devices)
        if (device->videoControl()) return device;
    throw std::runtime_error("no camera is listed");
}

inline usb::InterfaceReport reportOnTheCamera() {
    const auto registry = usb::makeSystemRegistry();
    return registry->inspectInterface(cameraAmong(*registry)->locationId().value()).value();
}

}  // namespace guest
