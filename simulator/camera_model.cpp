#include "simulator/camera_model.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "simulator/camera_descriptors.h"
#include "simulator/requests.h"

namespace simulator {

namespace {

constexpr std::size_t kMostTransfers = 8192;

/// A GET_INFO byte: can be read, and no more (USB Video Class 1.1, section 4.1.2).
constexpr std::uint8_t kGetOnly = 0x01;

RequestKey keyOf(const usb::SetupPacket &setup) {
    return {unitOf(setup), selectorOf(setup), setup.request};
}

bool isMotorised(const Control &control) {
    return control.unit == kCameraTerminal &&
           (control.selector == kPanTiltAbsoluteSelector || control.selector == kZoomAbsoluteSelector);
}

}  // namespace

CameraModel::CameraModel(CameraOptions options, Clock clock)
    : options_(std::move(options)), units_(options_.record, std::move(clock)) {}

Bytes CameraModel::deviceDescriptor() const {
    return buildDeviceDescriptor(options_);
}

Bytes CameraModel::configurationDescriptor() const {
    return buildConfigurationDescriptor(options_);
}

Bytes CameraModel::videoControlDescriptors() const {
    return buildVideoControlDescriptors(options_);
}

std::chrono::milliseconds CameraModel::answerDelay(const usb::SetupPacket &setup) {
    constexpr std::chrono::hours kNever{1};  // no host waits so long
    if (options_.hangsOnOrder && isOrder(setup)) hangs_ = true;
    return hangs_ ? kNever : options_.answerDelay;
}

std::optional<std::size_t> CameraModel::controlRequest(const usb::SetupPacket &setup,
                                                       std::span<std::uint8_t> data) {
    if (options_.goneOnOrder && isOrder(setup)) requestsLeft_ = 0;
    if (isUnplugged()) return std::nullopt;

    const bool accepted = answer(setup, data);
    if (requestsLeft_) --*requestsLeft_;
    record({setup, {data.begin(), data.end()}, accepted});
    if (!accepted) return std::nullopt;
    return options_.shortAnswers && isAnswered(setup) ? (data.size() + 1) / 2 : data.size();
}

Pose CameraModel::limits(std::int32_t model::Range::*property) const {
    const model::Record &record = options_.record;
    return {static_cast<double>(record.pan.*property), static_cast<double>(record.tilt.*property),
            static_cast<double>(record.zoom.*property)};
}

bool CameraModel::isOrder(const usb::SetupPacket &setup) const {
    return !isAnswered(setup) && unitOf(setup) == options_.cameraTerminalId;
}

bool CameraModel::answer(const usb::SetupPacket &setup, std::span<std::uint8_t> data) {
    constexpr std::uint16_t kLowByte = 0xFF;
    if (setup.length != data.size()) return false;
    if (interfaceOf(setup) != options_.videoControlInterface || (setup.value & kLowByte) != 0) return false;
    if (options_.refused.contains(keyOf(setup))) return false;

    const auto control = findControl(options_, unitOf(setup), selectorOf(setup));
    if (!control) return false;
    if (setup.requestType == request::kSetRequestType)
        return setup.request == request::kSetCur && units_.set(*control, data);
    if (setup.requestType != request::kGetRequestType) return false;

    const Bytes value = get(*control, setup.request);
    if (value.empty() || value.size() != data.size()) return false;
    std::ranges::copy(value, data.begin());
    return true;
}

Bytes CameraModel::get(const Control &control, std::uint8_t request) const {
    if (options_.zeroResolution && request == request::kGetRes) return Bytes(control.size(), 0);
    if (!isMotorised(control)) return units_.get(control, request);

    if (options_.outsideRange && request == request::kGetCur) {
        Control beyond = control;
        for (ControlField &field : beyond.fields) field.range.maximum += 10 * field.range.resolution;
        return encode(beyond, &model::Range::maximum);
    }
    if (options_.readOnly && request == request::kGetInfo) return {kGetOnly};
    if (options_.reversedRange && request == request::kGetMin) return units_.get(control, request::kGetMax);
    if (options_.reversedRange && request == request::kGetMax) return units_.get(control, request::kGetMin);
    return units_.get(control, request);
}

void CameraModel::refuse(const RequestKey &key, bool refused) {
    if (refused)
        options_.refused.insert(key);
    else
        options_.refused.erase(key);
}

void CameraModel::plugIn() {
    requestsLeft_.reset();
    hangs_ = false;
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
