#include "simulator/usbip/faults.h"

#include <algorithm>
#include <array>
#include <utility>

#include "simulator/camera_controls.h"
#include "simulator/requests.h"

namespace simulator::usbip {

namespace {

constexpr std::uint8_t kOtherTerminal = 5;
constexpr std::uint8_t kOtherUnit = 6;

/// Under every id that the unit can have, since faults may be combined.
template <std::uint8_t request>
void refuse(CameraOptions &options) {
    for (const std::uint8_t unit : {kCameraTerminal, kProcessingUnit, kOtherTerminal, kOtherUnit})
        for (const Control &control : allControls(options.record))
            options.refused.insert({unit, control.selector, request});
}

struct Fault {
    std::string_view name;
    void (*add)(CameraOptions &options);
};

constexpr std::array kFaults{
    Fault{"get-info", refuse<request::kGetInfo>},
    Fault{"get-min", refuse<request::kGetMin>},
    Fault{"get-max", refuse<request::kGetMax>},
    Fault{"get-res", refuse<request::kGetRes>},
    Fault{"get-def", refuse<request::kGetDef>},
    Fault{"get-cur", refuse<request::kGetCur>},
    Fault{"set-cur", refuse<request::kSetCur>},
    Fault{"not-ready",
          [](CameraOptions &options) {
              refuse<request::kSetCur>(options);
              options.notReady = true;
          }},
    Fault{"slow", [](CameraOptions &options) { options.answerDelay = std::chrono::seconds(1); }},
    Fault{"very-slow", [](CameraOptions &options) { options.answerDelay = std::chrono::milliseconds(2500); }},
    Fault{"hang", [](CameraOptions &options) { options.hangsOnOrder = true; }},
    Fault{"gone", [](CameraOptions &options) { options.goneOnOrder = true; }},
    Fault{"short", [](CameraOptions &options) { options.shortAnswers = true; }},
    Fault{"outside", [](CameraOptions &options) { options.outsideRange = true; }},
    Fault{"res-0", [](CameraOptions &options) { options.zeroResolution = true; }},
    Fault{"reversed", [](CameraOptions &options) { options.reversedRange = true; }},
    Fault{"no-zoom", [](CameraOptions &options) { options.hasZoomAbs = false; }},
    Fault{"ids",
          [](CameraOptions &options) {
              options.cameraTerminalId = kOtherTerminal;
              options.processingUnitId = kOtherUnit;
          }},
    Fault{"swapped-ids",
          [](CameraOptions &options) { std::swap(options.cameraTerminalId, options.processingUnitId); }},
    Fault{"interface", [](CameraOptions &options) { options.videoControlInterface = 1; }},
    Fault{"exposure", [](CameraOptions &options) { options.hasExposureMode = true; }},
    Fault{"wb-both", [](CameraOptions &options) { options.hasAutoWhiteBalanceComponent = true; }},
    Fault{"wb-component",
          [](CameraOptions &options) {
              options.hasAutoWhiteBalanceComponent = true;
              options.hasAutoWhiteBalanceTemp = false;
          }},
    Fault{"misplaced", [](CameraOptions &options) { options.isMisplaced = true; }},
    Fault{"no-header", [](CameraOptions &options) { options.hasHeader = false; }},
};

}  // namespace

bool addFault(std::string_view name, CameraOptions &options) {
    const auto *const fault = std::ranges::find(kFaults, name, &Fault::name);
    if (fault == kFaults.end()) return false;
    fault->add(options);
    return true;
}

}  // namespace simulator::usbip
