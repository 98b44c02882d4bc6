#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <tuple>

namespace simulator {

/// Identifies one kind of request to one control: unit id, selector, bRequest.
using RequestKey = std::tuple<std::uint8_t, std::uint8_t, std::uint8_t>;

/// What kind of camera to be. Set in code only; the defaults are a healthy camera of the supported model.
struct CameraOptions {
    std::uint16_t vendorId = 0x2574;
    std::uint16_t productId = 0x09C0;
    std::uint16_t uvcVersion = 0x0110;  ///< bcdUVC: 0x0100 or 0x0110
    std::string productName = "Cámara PTZ simulada";
    bool hasPanTiltAbs = true;
    bool hasZoomAbs = true;
    std::set<RequestKey> refused;  ///< requests that this camera stalls although it has the control
};

}  // namespace simulator
