#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "uvc/uvc_controller.h"

/// The one camera model that is moved.
namespace ptz {

inline constexpr std::uint16_t kVendorId = 0x2574;
inline constexpr std::uint16_t kProductId = 0x09C0;

/// The one that is moved among `controllers`, as UVCController::uvcControllers() lists them: the last of the
/// model. Null when there is none.
[[nodiscard]] inline std::shared_ptr<UVCController> supportedCamera(
    const std::vector<std::shared_ptr<UVCController>> &controllers) {
    std::shared_ptr<UVCController> chosen;
    for (const auto &controller : controllers)
        if (controller->vendorId() == kVendorId && controller->productId() == kProductId) chosen = controller;
    return chosen;
}

}  // namespace ptz
