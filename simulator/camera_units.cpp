#include "simulator/camera_units.h"

#include "simulator/requests.h"

namespace simulator {

namespace {

// Raw units a second.
constexpr double kPanSpeed = 60.0 * model::kRawPerDegree;
constexpr double kTiltSpeed = 45.0 * model::kRawPerDegree;

/// The whole range in two seconds.
double zoomSpeed(const model::Range &zoom) {
    return (zoom.maximum - zoom.minimum) / 2.0;
}

}  // namespace

CameraUnits::CameraUnits(const model::Record &record, Clock clock)
    : clock_(std::move(clock)),
      pan_(kPanSpeed, record.pan.defaultValue),
      tilt_(kTiltSpeed, record.tilt.defaultValue),
      zoom_(zoomSpeed(record.zoom), record.zoom.defaultValue) {
    for (const Control &control : allControls(record))
        settings_[{control.unit, control.selector}] = encode(control, &model::Range::defaultValue);
}

bool CameraUnits::set(const Control &control, std::span<const std::uint8_t> data) {
    const auto numbers = decodeSetting(control, data);
    if (!numbers) return false;
    settings_[{control.unit, control.selector}].assign(data.begin(), data.end());

    if (control.unit == kCameraTerminal && control.selector == kPanTiltAbsoluteSelector) {
        pan_.moveTo((*numbers)[0], clock_());
        tilt_.moveTo((*numbers)[1], clock_());
    }
    if (control.unit == kCameraTerminal && control.selector == kZoomAbsoluteSelector)
        zoom_.moveTo((*numbers)[0], clock_());
    return true;
}

Bytes CameraUnits::get(const Control &control, std::uint8_t request) const {
    switch (request) {
        case request::kGetCur:
            // Where the camera was told to go, even while the motors run. A nudge reads the position and then
            // sets it: from the momentary position, each click during a move would lose part of the one
            // before. And a scene saved during a move would keep a point on the way.
            return settings_.at({control.unit, control.selector});
        case request::kGetMin:
            return encode(control, &model::Range::minimum);
        case request::kGetMax:
            return encode(control, &model::Range::maximum);
        case request::kGetRes:
            return encode(control, &model::Range::resolution);
        case request::kGetDef:
            return encode(control, &model::Range::defaultValue);
        case request::kGetLen:
            return {static_cast<std::uint8_t>(control.size()), 0};
        case request::kGetInfo:
            return {control.info};
        default:
            return {};
    }
}

Pose CameraUnits::pose() const {
    const auto now = clock_();
    return {pan_.position(now), tilt_.position(now), zoom_.position(now)};
}

Pose CameraUnits::target() const {
    return {pan_.target(), tilt_.target(), zoom_.target()};
}

bool CameraUnits::isMoving() const {
    const auto now = clock_();
    return pan_.isMoving(now) || tilt_.isMoving(now) || zoom_.isMoving(now);
}

}  // namespace simulator
