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

    // Ways in which real cameras differ from what a host likes to take for granted.
    std::uint8_t cameraTerminalId = 1;
    std::uint8_t processingUnitId = 2;
    std::uint8_t videoControlInterface = 0;  ///< the interfaces below it are of no class that anyone drives
    bool hasHeader = true;                   ///< the VideoControl header descriptor
    bool shortAnswers = false;               ///< see CameraModel::answeredBytes()
    bool outsideRange = false;               ///< pan, tilt and zoom read as ten steps above their own maximum
    bool zeroResolution = false;             ///< GET_RES answers 0
    bool reversedRange = false;              ///< pan, tilt and zoom: GET_MIN and GET_MAX change places
    bool notReady = false;                   ///< says of a refused request that it is not ready for it
    bool hangsOnOrder = false;               ///< see usbip::VirtualCamera::answerDelay()
};

}  // namespace simulator
