#pragma once

#include <chrono>
#include <string_view>

#include "simulator/camera_options.h"

namespace simulator::usbip {

/// The faults of the cameras on offer; none by default.
struct Faults {
    CameraOptions options;
    std::chrono::milliseconds answerDelay{0};
};

/// Adds the fault of this name (docs/camara-virtual.md lists them). False: there is no such fault.
[[nodiscard]] bool addFault(std::string_view name, Faults &faults);

}  // namespace simulator::usbip
