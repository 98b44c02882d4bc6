#pragma once

#include <cstdint>
#include <string>

#include "scenes/scene_file.h"

namespace support {

/// A scene as the window saves it: the camera's position and no paths of devices.
inline ManualPreset scene(const std::string &name, std::int64_t pan, std::int64_t tilt, std::int64_t zoom) {
    return {name, "", "", "", tilt, pan, zoom};
}

}  // namespace support
