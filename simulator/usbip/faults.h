#pragma once

#include <string_view>

#include "simulator/camera_options.h"

namespace simulator::usbip {

/// Gives the camera the fault of this name (docs/camara-virtual.md lists them). False: there is no such
/// fault.
[[nodiscard]] bool addFault(std::string_view name, CameraOptions &options);

}  // namespace simulator::usbip
