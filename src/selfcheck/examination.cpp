#include "selfcheck/examination.h"

#include <algorithm>
#include <utility>

#include "model/camera_models.h"
#include "ptz/supported_camera.h"
#include "selfcheck/watched_device.h"
#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_controller.h"
#include "uvc/uvc_value.h"

namespace selfcheck {
namespace {

constexpr std::uint32_t kCanBeSet = 1u << 1;  // of GET_INFO (USB Video Class 1.1, section 4.1.2)

bool hasVideoControl(const usb::Device &device) {
    return device.videoControl() != nullptr;
}

}  // namespace

Examination::Examination(std::shared_ptr<const usb::DeviceRegistry> registry, AccessInspector inspector,
                         std::chrono::milliseconds patience)
    : registry_(std::move(registry)), inspector_(std::move(inspector)), patience_(patience) {
    steps_.addLast([this] { lookAtBus(); });
    steps_.addLast([this] { facts_.store = scenes::checkStore(); });
}

Examination::~Examination() = default;

bool Examination::step() {
    return steps_.run();
}

void Examination::lookAtBus() {
    const auto devices = registry_->devices();
    facts_.busWasRead = devices.has_value();
    if (!devices) return;

    std::vector<std::shared_ptr<UVCController>> controllers;
    for (const auto &device : *devices) {
        if (!hasVideoControl(*device)) continue;
        const auto watched =
            std::make_shared<WatchedDevice>(device, WatchedDevice::Orders::refused, patience_);
        const auto controller = UVCController::uvcControllerWithService(watched);
        if (controller) controllers.push_back(controller);

        CameraFacts camera;
        camera.name = device->registryName().value_or("");
        camera.vendorId = device->vendorId().value_or(UVCController::kUnknownId);
        camera.productId = device->productId().value_or(UVCController::kUnknownId);
        camera.locationId = device->locationId();
        camera.isSupported = model::isSupported(camera.vendorId, camera.productId);
        camera.isUsable = controller != nullptr;
        facts_.cameras.push_back(std::move(camera));

        if (!controller || ptz::supportedCamera(controllers) != controller) continue;
        facts_.moved = facts_.cameras.size() - 1;
        device_ = watched;
        camera_ = controller;
    }
    if (!camera_) return;

    steps_.addFirst([this] { planControl(facts_.zoom, UVCTerminalControlZoomAbsolute); });
    steps_.addFirst([this] { planControl(facts_.panTilt, UVCTerminalControlPanTiltAbsolute); });
    steps_.addFirst([this] { facts_.access = inspector_(camera_->locationId()); });
}

void Examination::planControl(ControlFacts &facts, const char *name) {
    facts.isOffered = !camera_->controlIsNotAvailable(name);
    if (!facts.isOffered) return;

    const std::size_t row = UVCController::controlIndexForString(name);
    steps_.addFirst([this, &facts, row] { readValue(facts, row, &ControlFacts::defaultValue); });
    steps_.addFirst([this, &facts, row] { readValue(facts, row, &ControlFacts::resolution); });
    steps_.addFirst([this, &facts, row] { readRange(facts, row); });
    steps_.addFirst([this, &facts, row] { readInfo(facts, row); });
    // First the request that is one transfer at most: a camera that takes too long for it is asked nothing
    // that may be several.
    readValue(facts, row, &ControlFacts::current);
}

void Examination::asking(ControlFacts &facts, const std::function<void()> &ask) {
    const RequestLog &log = device_->log();
    const std::size_t before = log.requests.size();
    ask();
    for (std::size_t i = before; i < log.requests.size(); ++i) {
        const WatchedRequest &request = log.requests[i];
        // Of the other requests the kernel's driver makes four transfers, or none.
        if (request.code == usb::request::kGetCur)
            facts_.slowest = std::max(facts_.slowest, request.duration);
        if (request.outcome != usb::Outcome::done) facts.failures.push_back({request.code, request.outcome});
    }
    facts_.givenUp = log.givenUp;
    facts_.isTooSlow = log.isTooSlow;
}

void Examination::readInfo(ControlFacts &facts, std::size_t row) {
    asking(facts, [&] {
        std::uint32_t info = kCanBeSet;
        if (camera_->capabilities(info, row)) facts.maySet = (info & kCanBeSet) != 0;
    });
}

void Examination::readRange(ControlFacts &facts, std::size_t row) {
    asking(facts, [&] {
        auto minimum = UVCValue::uvcValueWithType(uvc::controlType(row));
        auto maximum = UVCValue::uvcValueWithType(uvc::controlType(row));
        std::shared_ptr<UVCValue> none;
        std::uint32_t capabilities = 0;
        camera_->getLowValue(minimum, maximum, none, none, capabilities, row);
        if (!minimum || !maximum) return;
        facts.minimum = numbersOf(*minimum);
        facts.maximum = numbersOf(*maximum);
    });
}

void Examination::readValue(ControlFacts &facts, std::size_t row, Slot slot) {
    asking(facts, [&] {
        auto value = UVCValue::uvcValueWithType(uvc::controlType(row));
        std::shared_ptr<UVCValue> none;
        std::uint32_t capabilities = 0;
        if (slot == &ControlFacts::current) {
            if (!camera_->getValue(*value, row)) return;
        } else if (slot == &ControlFacts::resolution) {
            camera_->getLowValue(none, none, value, none, capabilities, row);
        } else {
            camera_->getLowValue(none, none, none, value, capabilities, row);
        }
        if (value) facts.*slot = numbersOf(*value);
    });
}

}  // namespace selfcheck
