#pragma once

#include <memory>
#include <vector>

#include "model/camera_models.h"
#include "uvc/uvc_controller.h"

namespace ptz {

/// The one that is moved among `controllers`, as UVCController::uvcControllers() lists them: the last of a
/// supported model. Null when there is none.
[[nodiscard]] inline std::shared_ptr<UVCController> supportedCamera(
    const std::vector<std::shared_ptr<UVCController>> &controllers) {
    std::shared_ptr<UVCController> chosen;
    for (const auto &controller : controllers)
        if (model::isSupported(controller->vendorId(), controller->productId())) chosen = controller;
    return chosen;
}

}  // namespace ptz
