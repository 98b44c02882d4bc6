#pragma once

#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <tuple>

#include "model/camera_models.h"

namespace simulator {

/// Identifies one kind of request to one control: unit id, selector, bRequest.
using RequestKey = std::tuple<std::uint8_t, std::uint8_t, std::uint8_t>;

/// What a simulated camera of a model calls itself.
[[nodiscard]] inline std::string simulatedName(const model::Record &record) {
    return std::string(record.name) + " simulada";
}

/// What kind of camera it is. Set in code only; the defaults are the first supported model without faults.
struct CameraOptions {
    model::Record record = model::kRecords.front();  ///< its ids, and the ranges of its motors
    std::string productName = simulatedName(record);
    bool hasPanTiltAbs = true;
    bool hasZoomAbs = true;
    bool hasExposureMode = false;  ///< auto-exposure-mode: manual and aperture priority
    bool hasAutoWhiteBalanceTemp = true;
    bool hasAutoWhiteBalanceComponent = false;

    // Real cameras differ in these, though a host easily takes them for granted.
    std::uint8_t cameraTerminalId = 1;
    std::uint8_t processingUnitId = 2;
    std::uint8_t videoControlInterface = 0;  ///< no driver takes the interfaces below it
    bool hasHeader = true;                   ///< the VideoControl header descriptor
    bool isMisplaced = false;                ///< VideoControl's class descriptors stand behind its endpoint

    // Faults: CameraModel breaks the requests by them. An order is a request that moves the camera.
    std::set<RequestKey> refused;              ///< stalled although the camera has the control
    std::chrono::milliseconds answerDelay{0};  ///< how long it takes over every request
    bool hangsOnOrder = false;                 ///< answers nothing from its first order on
    bool goneOnOrder = false;                  ///< the cable comes out at an order
    bool shortAnswers = false;                 ///< answers half of the bytes, rounded up
    bool outsideRange = false;    ///< pan, tilt and zoom read as ten steps above their own maximum
    bool zeroResolution = false;  ///< GET_RES answers 0
    bool reversedRange = false;   ///< pan, tilt and zoom: GET_MIN and GET_MAX change places
    bool readOnly = false;        ///< pan, tilt and zoom: GET_INFO says that they cannot be set
    bool notReady = false;        ///< says of a refused request that it is not ready for it
};

}  // namespace simulator
