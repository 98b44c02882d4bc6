#include "simulator/camera_model.h"

#include <algorithm>
#include <iterator>

#include "simulator/camera_descriptors.h"

namespace simulator {

namespace {

// Raw units a second.
constexpr double kPanSpeed = 60.0 * model::kRawPerDegree;
constexpr double kTiltSpeed = 45.0 * model::kRawPerDegree;

/// The whole range in two seconds.
double zoomSpeed(const model::Range &zoom) {
    return (zoom.maximum - zoom.minimum) / 2.0;
}

constexpr std::size_t kMostTransfers = 8192;

/// bmRequestType of a class request to an interface (USB 2.0, section 9.3).
constexpr std::uint8_t kSetRequestType = 0x21;
constexpr std::uint8_t kGetRequestType = 0xA1;

std::uint8_t highByte(std::uint16_t value) {
    return static_cast<std::uint8_t>(value >> 8);
}
std::uint8_t lowByte(std::uint16_t value) {
    return static_cast<std::uint8_t>(value & 0xFF);
}

RequestKey keyOf(const usb::SetupPacket &setup) {
    return {highByte(setup.index), highByte(setup.value), setup.request};
}

bool isMotorised(const Control &control) {
    return control.unit == kCameraTerminal &&
           (control.selector == kPanTiltAbsoluteSelector || control.selector == kZoomAbsoluteSelector);
}

/// One property of the three axes, also of controls that this camera does not offer: it has the motors.
Pose axes(const CameraOptions &options, std::int32_t model::Range::*property) {
    const model::Record &record = options.record;
    return {static_cast<double>(record.pan.*property), static_cast<double>(record.tilt.*property),
            static_cast<double>(record.zoom.*property)};
}

}  // namespace

CameraModel::CameraModel(CameraOptions options, Clock clock)
    : options_(std::move(options)),
      clock_(std::move(clock)),
      pan_(kPanSpeed, axes(options_, &model::Range::defaultValue).pan),
      tilt_(kTiltSpeed, axes(options_, &model::Range::defaultValue).tilt),
      zoom_(zoomSpeed(options_.record.zoom), axes(options_, &model::Range::defaultValue).zoom) {
    for (const Control &control : allControls(options_.record))
        settings_[{control.unit, control.selector}] = encode(control, &model::Range::defaultValue);
}

std::vector<std::uint8_t> CameraModel::deviceDescriptor() const {
    return buildDeviceDescriptor(options_);
}

std::vector<std::uint8_t> CameraModel::configurationDescriptor() const {
    return buildConfigurationDescriptor(options_);
}

std::vector<std::uint8_t> CameraModel::videoControlDescriptors() const {
    return buildVideoControlDescriptors(options_);
}

std::uint8_t CameraModel::videoControlInterface() const {
    return options_.videoControlInterface;
}

bool CameraModel::controlRequest(const usb::SetupPacket &setup, std::span<std::uint8_t> data) {
    if (isUnplugged()) return false;

    const bool accepted = answer(setup, data);
    if (requestsLeft_) --*requestsLeft_;
    record({setup, {data.begin(), data.end()}, accepted});
    return accepted;
}

bool CameraModel::answer(const usb::SetupPacket &setup, std::span<std::uint8_t> data) {
    if (setup.length != data.size()) return false;
    if (lowByte(setup.index) != options_.videoControlInterface || lowByte(setup.value) != 0) return false;
    if (options_.refused.contains(keyOf(setup))) return false;

    const auto control = findControl(options_, highByte(setup.index), highByte(setup.value));
    if (!control) return false;
    if (setup.requestType == kSetRequestType) return setup.request == request::kSetCur && set(*control, data);
    if (setup.requestType != kGetRequestType) return false;

    const std::vector<std::uint8_t> value = get(*control, setup.request);
    if (value.empty() || value.size() != data.size()) return false;
    std::ranges::copy(value, data.begin());
    return true;
}

bool CameraModel::set(const Control &control, std::span<const std::uint8_t> data) {
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

std::vector<std::uint8_t> CameraModel::get(const Control &control, std::uint8_t request) const {
    const bool reversed = options_.reversedRange && isMotorised(control);
    switch (request) {
        case request::kGetCur:
            return current(control);
        case request::kGetMin:
            return encode(control, reversed ? &model::Range::maximum : &model::Range::minimum);
        case request::kGetMax:
            return encode(control, reversed ? &model::Range::minimum : &model::Range::maximum);
        case request::kGetRes:
            if (options_.zeroResolution) return std::vector<std::uint8_t>(control.size(), 0);
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

std::vector<std::uint8_t> CameraModel::current(const Control &control) const {
    if (options_.outsideRange && isMotorised(control)) {
        Control beyond = control;
        for (ControlField &field : beyond.fields) field.range.maximum += 10 * field.range.resolution;
        return encode(beyond, &model::Range::maximum);
    }
    // The current setting is where the camera was told to go, even while the motors run. A nudge reads the
    // position and then sets it: from the momentary position, each click during a move would lose part of
    // the one before. And a scene saved during a move would keep a point on the way.
    return settings_.at({control.unit, control.selector});
}

Pose CameraModel::pose() const {
    const auto now = clock_();
    return {pan_.position(now), tilt_.position(now), zoom_.position(now)};
}

Pose CameraModel::target() const {
    return {pan_.target(), tilt_.target(), zoom_.target()};
}

bool CameraModel::isMoving() const {
    const auto now = clock_();
    return pan_.isMoving(now) || tilt_.isMoving(now) || zoom_.isMoving(now);
}

Pose CameraModel::minimum() const {
    return axes(options_, &model::Range::minimum);
}

Pose CameraModel::maximum() const {
    return axes(options_, &model::Range::maximum);
}

void CameraModel::refuse(const RequestKey &key, bool refused) {
    if (refused)
        options_.refused.insert(key);
    else
        options_.refused.erase(key);
}

int CameraModel::count(std::uint8_t unit, std::uint8_t selector, std::uint8_t request) const {
    return static_cast<int>(std::ranges::count_if(transfers_, [&](const Transfer &transfer) {
        return transfer.accepted && keyOf(transfer.setup) == RequestKey{unit, selector, request};
    }));
}

void CameraModel::record(Transfer transfer) {
    if (transfers_.size() >= kMostTransfers)
        transfers_.erase(transfers_.begin(), std::next(transfers_.begin(), kMostTransfers / 2));
    transfers_.push_back(std::move(transfer));
}

}  // namespace simulator
