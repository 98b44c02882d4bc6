#include "selfcheck/order_trial.h"

#include <utility>

#include "selfcheck/watched_device.h"
#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_controller.h"
#include "uvc/uvc_value.h"

namespace selfcheck {
namespace {

/// Longer than any order takes: a slow camera is to carry out both.
constexpr std::chrono::minutes kPatience{1};

/// The camera of the check; null when it is not there any more.
std::shared_ptr<const usb::Device> findAgain(const usb::DeviceRegistry &registry, const CameraFacts &camera) {
    const auto devices = registry.devices();
    if (!devices) return nullptr;
    for (const auto &device : *devices)
        if (device->locationId() == camera.locationId && device->vendorId() == camera.vendorId &&
            device->productId() == camera.productId)
            return device;
    return nullptr;
}

bool isWithin(const FieldValues &values, const FieldValues &minimum, const FieldValues &maximum) {
    for (std::size_t field = 0; field < values.size(); ++field)
        if (values[field] < minimum[field] || values[field] > maximum[field]) return false;
    return true;
}

}  // namespace

OrderTrial::OrderTrial(const std::shared_ptr<const usb::DeviceRegistry> &registry, const Facts &facts) {
    if (const auto device = findAgain(*registry, facts.cameras[*facts.moved])) {
        device_ = std::make_shared<WatchedDevice>(device, WatchedDevice::Orders::sent, kPatience);
        camera_ = UVCController::uvcControllerWithService(device_);
    }
    if (facts.panTilt.isOffered)
        steps_.addLast([this, control = facts.panTilt] {
            facts_.panTilt = tryControl(UVCTerminalControlPanTiltAbsolute, control);
        });
    if (facts.zoom.isOffered)
        steps_.addLast([this, control = facts.zoom] {
            facts_.zoom = tryControl(UVCTerminalControlZoomAbsolute, control);
        });
}

OrderTrial::~OrderTrial() = default;

bool OrderTrial::step() {
    return steps_.run();
}

usb::Outcome OrderTrial::lastOutcome() const {
    const RequestLog &log = device_->log();
    // A device that did not open has given up without a request.
    return log.givenUp.value_or(log.requests.empty() ? usb::Outcome::failed : log.requests.back().outcome);
}

OrderFacts OrderTrial::tryControl(const char *name, const ControlFacts &control) {
    if (!camera_) return {OrderFacts::Stage::reading, usb::Outcome::disconnected, {}};

    const std::size_t row = UVCController::controlIndexForString(name);
    const auto value = UVCValue::uvcValueWithType(uvc::controlType(row));
    if (!camera_->getValue(*value, row)) return {OrderFacts::Stage::reading, lastOutcome(), {}};

    // The camera may refuse such a position, or leave it: neither says whether it obeys.
    if (control.minimum && control.maximum &&
        !isWithin(numbersOf(*value), *control.minimum, *control.maximum))
        return {OrderFacts::Stage::outsideRange, usb::Outcome::done, {}};

    const bool isAccepted = camera_->setValue(*value, row);
    return {OrderFacts::Stage::ordering, isAccepted ? usb::Outcome::done : lastOutcome(),
            device_->log().requests.back().duration};
}

}  // namespace selfcheck
