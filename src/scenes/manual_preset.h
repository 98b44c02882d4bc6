#pragma once

#include <cstdint>
#include <string>

/// One scene: a saved camera position with a name. A plain value; texts are UTF-8.
struct ManualPreset {
    std::string Name;              ///< as shown in the scene list; names may repeat within a room
    std::string DS_Path;           ///< device path of the camera it was saved with; stored, never interpreted
    std::string HID_Path;          ///< second device path; stored only
    std::string HID_SerialNumber;  ///< serial number; stored only
    std::int64_t Tilt = 0;         ///< display units (about one degree)
    std::int64_t Pan = 0;          ///< display units
    std::int64_t Zoom = 0;         ///< the camera's raw zoom units

    bool operator==(const ManualPreset &) const = default;
};
