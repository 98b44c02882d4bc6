#include "ptz/camera_motion.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/fatal.h"
#include "ptz/camera_error_dialog.h"
#include "ptz/ptz_functions.h"

bool DemoMode = false;

namespace {

using platform::fatalStop;

/// An optional sign and decimal digits, nothing else.
std::optional<std::int64_t> parseInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// The comma-separated integers of a camera answer; fatal stop when a piece is not one or there are too few.
std::vector<std::int64_t> parseAnswer(std::string_view answer, std::size_t atLeast) {
    std::vector<std::int64_t> numbers;
    while (!answer.empty()) {
        const auto comma = std::min(answer.find(','), answer.size());
        if (comma > 0) {
            const auto number = parseInteger(answer.substr(0, comma));
            if (!number) fatalStop();
            numbers.push_back(*number);
        }
        answer.remove_prefix(std::min(comma + 1, answer.size()));
    }
    if (numbers.size() < atLeast) fatalStop();
    return numbers;
}

double displayToRaw(std::int64_t display, std::int64_t step) {
    const auto value = static_cast<double>(display);
    if (display == 0) return 0;
    const double scaled = display < 0 ? value * minPan / windowsMinPan : value * maxPan / windowsMaxPan;
    return scaled * static_cast<double>(step);
}

std::int32_t toCameraRange(double raw) {
    if (!(raw > -2147483649.0 && raw < 2147483648.0)) fatalStop();
    return static_cast<std::int32_t>(raw);
}

std::int64_t toNearestInteger(double value) {
    const double rounded = std::round(value);
    if (!(rounded >= -0x1p63 && rounded < 0x1p63)) fatalStop();
    return static_cast<std::int64_t>(rounded);
}

}  // namespace

double ConvertPan_MacToWin(double Value) {
    if (Value == 0) return 0;
    const double scaled = Value / static_cast<double>(PanStep);
    return Value < 0 ? scaled * windowsMinPan / minPan : scaled * windowsMaxPan / maxPan;
}

ptz::PositionDictionary ZEL_GetPanTiltPosition() {
    if (DemoMode) return {{"Pan_Value", 0}, {"Tilt_Value", 0}};

    const auto answer = getPanTiltPosition();
    if (!answer) CameraErrorDialog();

    const auto raw = parseAnswer(*answer, 2);
    // Tilt goes through the pan conversion on purpose: see the header.
    return {{"Pan_Value", toNearestInteger(ConvertPan_MacToWin(static_cast<double>(raw[0])))},
            {"Tilt_Value", toNearestInteger(ConvertPan_MacToWin(static_cast<double>(raw[1])))}};
}

ptz::PositionDictionary ZEL_GetZoomPosition() {
    if (DemoMode) return {{"Zoom_Value", 0}};

    const auto answer = getZoomPosition();
    if (!answer) CameraErrorDialog();
    return {{"Zoom_Value", parseAnswer(*answer, 1).front()}};
}

void ZEL_SetPanTiltPosition(std::int64_t Pan, std::int64_t Tilt) {
    if (DemoMode) return;

    const std::int32_t rawPan = toCameraRange(displayToRaw(Pan, PanStep));
    const std::int32_t rawTilt = toCameraRange(displayToRaw(Tilt, TiltStep));
    if (!setPanTiltPosition(rawPan, rawTilt)) CameraErrorDialog();
}

void ZoomMove(std::int64_t avance) {
    const auto position = ZEL_GetZoomPosition();
    const std::int64_t sum = platform::checkedAdd(platform::valueFor(position, "Zoom_Value"), avance);
    if (DemoMode) return;

    const std::int64_t zoom = std::max<std::int64_t>(sum, 0);
    if (zoom > std::numeric_limits<std::int32_t>::max()) fatalStop();
    if (!setZoomPosition(static_cast<std::int32_t>(zoom))) CameraErrorDialog();
}

void ptz::moveCameraBy(std::int64_t panStep, std::int64_t tiltStep) {
    const auto position = ZEL_GetPanTiltPosition();
    ZEL_SetPanTiltPosition(platform::checkedAdd(platform::valueFor(position, "Pan_Value"), panStep),
                           platform::checkedAdd(platform::valueFor(position, "Tilt_Value"), tiltStep));
}

void Mover_Izquierda() {
    ptz::moveCameraBy(-1, 0);
}

void Mover_Derecha() {
    ptz::moveCameraBy(1, 0);
}

void Mover_Arriba() {
    ptz::moveCameraBy(0, 1);
}

void Mover_Abajo() {
    ptz::moveCameraBy(0, -1);
}
