#pragma once

#include <memory>

#include "usb/system_registry.h"
#include "uvc/uvc_controller.h"

namespace guest {

/// The camera library finds devices as it does in the product.
inline void useProductRegistry() {
    UVCController::useDeviceRegistry(usb::makeSystemRegistry());
}

}  // namespace guest
