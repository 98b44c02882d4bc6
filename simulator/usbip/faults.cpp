#include "simulator/usbip/faults.h"

#include <algorithm>
#include <array>
#include <utility>

#include "simulator/camera_controls.h"

namespace simulator::usbip {

namespace {

constexpr std::uint8_t kOtherTerminal = 5;
constexpr std::uint8_t kOtherUnit = 6;

/// Under every id that the unit can have, since faults may be combined.
template <std::uint8_t request>
void refuse(Faults &faults) {
    for (const std::uint8_t unit : {kCameraTerminal, kProcessingUnit, kOtherTerminal, kOtherUnit})
        for (const Control &control : allControls(faults.options.record))
            faults.options.refused.insert({unit, control.selector, request});
}

struct Fault {
    std::string_view name;
    void (*add)(Faults &faults);
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
          [](Faults &faults) {
              refuse<request::kSetCur>(faults);
              faults.options.notReady = true;
          }},
    Fault{"slow", [](Faults &faults) { faults.answerDelay = std::chrono::seconds(1); }},
    Fault{"very-slow", [](Faults &faults) { faults.answerDelay = std::chrono::milliseconds(2500); }},
    Fault{"hang", [](Faults &faults) { faults.options.hangsOnOrder = true; }},
    Fault{"short", [](Faults &faults) { faults.options.shortAnswers = true; }},
    Fault{"outside", [](Faults &faults) { faults.options.outsideRange = true; }},
    Fault{"res-0", [](Faults &faults) { faults.options.zeroResolution = true; }},
    Fault{"reversed", [](Faults &faults) { faults.options.reversedRange = true; }},
    Fault{"no-zoom", [](Faults &faults) { faults.options.hasZoomAbs = false; }},
    Fault{"ids",
          [](Faults &faults) {
              faults.options.cameraTerminalId = kOtherTerminal;
              faults.options.processingUnitId = kOtherUnit;
          }},
    Fault{
        "swapped-ids",
        [](Faults &faults) { std::swap(faults.options.cameraTerminalId, faults.options.processingUnitId); }},
    Fault{"interface", [](Faults &faults) { faults.options.videoControlInterface = 1; }},
    Fault{"no-header", [](Faults &faults) { faults.options.hasHeader = false; }},
};

}  // namespace

bool addFault(std::string_view name, Faults &faults) {
    const auto *const fault = std::ranges::find(kFaults, name, &Fault::name);
    if (fault == kFaults.end()) return false;
    fault->add(faults);
    return true;
}

}  // namespace simulator::usbip
