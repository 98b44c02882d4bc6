#include "ptz/ptz_functions.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>

#include "model/camera_models.h"
#include "ptz/supported_camera.h"
#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_control.h"
#include "uvc/uvc_controller.h"
#include "uvc/uvc_value.h"

namespace {

/// The last supported camera of the list, held open until the caller lets go of it; null when there is none.
std::shared_ptr<UVCController> chooseCamera() {
    const auto controllers = UVCController::uvcControllersWithIds(model::isSupported);
    auto camera = controllers ? ptz::supportedCamera(*controllers) : nullptr;
    // One claim for the six requests of an order: each that the kernel grants costs as much as a request. If
    // it is not granted, the requests fail each by itself.
    if (camera) camera->setIsInterfaceOpen(true);
    return camera;
}

std::shared_ptr<UVCControl> controlOf(UVCController &camera, const char *name) {
    auto control = camera.controlWithName(name);
    if (!control) std::fprintf(stderr, "ERROR:  invalid control name: %s\n", name);
    return control;
}

/// The control's current value as text, read from the camera.
std::optional<std::string> readValue(const char *name) {
    const auto camera = chooseCamera();
    if (!camera) return std::nullopt;

    const auto control = controlOf(*camera, name);
    if (!control) return ptz::kUnreadablePosition;

    const auto value = control->currentValue();
    if (!value) {
        std::fprintf(stderr, "ERROR:  unable to read value of control: %s\n", name);
        return ptz::kUnreadablePosition;
    }
    return value->stringValue();
}

bool writeValue(const char *name, const std::string &text) {
    const auto camera = chooseCamera();
    if (!camera) return false;

    const auto control = controlOf(*camera, name);
    if (!control) return false;

    if (!control->setCurrentValueFromCString(text.c_str(), uvc::kShowWarnings)) {
        std::fprintf(stderr, "ERROR:  invalid value for control %s: %s\n", name, text.c_str());
        return false;
    }
    if (!control->writeFromCurrentValue()) {
        std::fprintf(stderr, "ERROR:  unable to write new value to control %s\n", name);
        return false;
    }
    return true;
}

std::optional<std::string> readSummary(const char *name) {
    const auto camera = chooseCamera();
    if (!camera) return std::nullopt;

    const auto control = controlOf(*camera, name);
    if (!control) return std::nullopt;
    return control->summaryString();
}

std::string_view dropFirst(std::string_view text, std::size_t count) {
    return text.substr(std::min(count, text.size()));
}

/// The text behind the first `marker`; empty when there is none.
std::string_view behind(std::string_view text, std::string_view marker) {
    const auto at = text.find(marker);
    return at == std::string_view::npos ? std::string_view() : text.substr(at + marker.size());
}

std::string_view before(std::string_view text, char separator) {
    return text.substr(0, text.find(separator));
}

struct PanTiltText {
    std::string pan;
    std::string tilt;
};

/// Cuts the two numbers out of "pan=P,tilt=T}...", the first `panPrefix` characters being dropped.
PanTiltText cutPanTilt(std::string_view text, std::size_t panPrefix) {
    constexpr std::string_view kTiltPrefix = ",tilt=";
    const std::string_view fromPan = dropFirst(text, panPrefix);
    const auto comma = fromPan.find(',');
    const std::string_view fromTilt = comma == std::string_view::npos
                                          ? std::string_view()
                                          : dropFirst(fromPan.substr(comma), kTiltPrefix.size());
    return {std::string(before(fromPan, ',')), std::string(before(fromTilt, '}'))};
}

}  // namespace

std::optional<std::string> getPanTiltPosition() {
    auto text = readValue(UVCTerminalControlPanTiltAbsolute);
    if (!text || *text == ptz::kUnreadablePosition) return text;

    const PanTiltText position = cutPanTilt(*text, std::string_view("{pan=").size());
    return position.pan + "," + position.tilt;
}

bool setPanTiltPosition(std::int32_t pan, std::int32_t tilt) {
    std::string text("{");
    text.append(std::to_string(pan)).append(",").append(std::to_string(tilt)).append("}");
    return writeValue(UVCTerminalControlPanTiltAbsolute, text);
}

std::optional<std::string> getZoomPosition() {
    return readValue(UVCTerminalControlZoomAbsolute);
}

bool setZoomPosition(std::int32_t zoom) {
    std::string text("{");
    text.append(std::to_string(zoom)).append("}");
    return writeValue(UVCTerminalControlZoomAbsolute, text);
}

std::optional<std::string> getPanTiltData() {
    const auto summary = readSummary(UVCTerminalControlPanTiltAbsolute);
    if (!summary) return std::nullopt;

    constexpr std::size_t kPanPrefix = std::string_view("pan=").size();
    const PanTiltText minimum = cutPanTilt(behind(*summary, "minimum: {"), kPanPrefix);
    // One character too many, on purpose: see the header.
    const PanTiltText maximum = cutPanTilt(behind(*summary, "maximum: {"), kPanPrefix + 1);
    const PanTiltText resolution = cutPanTilt(behind(*summary, "step-size: {"), kPanPrefix);
    const PanTiltText defaults = cutPanTilt(behind(*summary, "default-value: {"), kPanPrefix);

    return minimum.pan + "," + maximum.pan + "," + resolution.pan + "," + defaults.pan + "," + minimum.tilt +
           "," + maximum.tilt + "," + resolution.tilt + "," + defaults.tilt;
}

std::optional<std::string> getZoomData() {
    const auto summary = readSummary(UVCTerminalControlZoomAbsolute);
    if (!summary) return std::nullopt;

    const auto line = [&summary](std::string_view marker) {
        return std::string(before(behind(*summary, marker), '\n'));
    };
    return line("minimum: ") + "," + line("maximum: ") + "," + line("step-size: ") + "," +
           line("default-value: ");
}
