#pragma once

#include <memory>

#include "usb/linux/linux_registry.h"
#include "uvc/uvc_controller.h"

namespace guest {

/// The camera library finds devices as it does in the product.
inline void useProductRegistry() {
    UVCController::useDeviceRegistry(std::make_shared<usb::LinuxRegistry>());
}

}  // namespace guest
