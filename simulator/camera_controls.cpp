#include "simulator/camera_controls.h"

namespace simulator {

namespace {

/// GET_INFO bits (USB Video Class 1.1, section 4.1.2).
constexpr std::uint8_t kGetAndSet = 0x03;
constexpr std::uint8_t kAutoUpdate = 0x08;

/// Pan, tilt and zoom can change without the host (a remote control, a motor that gets stuck). Without the
/// autoupdate bit the host would answer reads from a cache.
constexpr std::uint8_t kMotorised = kGetAndSet | kAutoUpdate;

constexpr std::uint8_t kCt = kCameraTerminal;
constexpr std::uint8_t kPu = kProcessingUnit;

constexpr std::uint8_t kExposureModeSelector = 0x02;
constexpr std::uint8_t kWhiteBalanceTempSelector = 0x0B;
constexpr std::uint8_t kWhiteBalanceComponentSelector = 0x0D;

std::int32_t decodeField(const ControlField &field, std::span<const std::uint8_t> data) {
    std::uint32_t bits = numberAt(data, 0, field.bytes, std::endian::little);
    const unsigned width = 8u * field.bytes;
    const bool negative = field.range.minimum < 0 && ((bits >> (width - 1)) & 1u) != 0;
    if (negative && width < 32) bits |= ~std::uint32_t{0} << width;
    return static_cast<std::int32_t>(bits);
}

}  // namespace

// unit, selector, enable bit, info, fields of {bytes, {minimum, maximum, resolution, default}}
std::array<Control, kControlCount> allControls(const model::Record &record) {
    return {{
        {kCt, kExposureModeSelector, 1, kGetAndSet, {{{1, {1, 8, 1 | 8, 8}}}}},  // auto-exposure-mode: a bit
                                                                                 // a mode
        {kCt, 0x06, 5, kGetAndSet, {{{2, {0, 255, 1, 60}}}}},                    // focus-abs
        {kCt, 0x08, 17, kGetAndSet, {{{1, {0, 1, 1, 1}}}}},                      // auto-focus
        {kCt, kZoomAbsoluteSelector, 9, kMotorised, {{{2, record.zoom}}}},       // zoom-abs
        {kCt,
         kPanTiltAbsoluteSelector,
         11,
         kMotorised,
         {{{4, record.pan}, {4, record.tilt}}}},                      // pan-tilt-abs
        {kPu, 0x01, 8, kGetAndSet, {{{2, {0, 2, 1, 0}}}}},            // backlight-compensation
        {kPu, 0x02, 0, kGetAndSet, {{{2, {-64, 64, 1, 0}}}}},         // brightness
        {kPu, 0x03, 1, kGetAndSet, {{{2, {0, 100, 1, 50}}}}},         // contrast
        {kPu, 0x05, 10, kGetAndSet, {{{1, {0, 2, 1, 1}}}}},           // power-line-frequency: 1 is 50 Hz
        {kPu, 0x07, 3, kGetAndSet, {{{2, {0, 100, 1, 60}}}}},         // saturation
        {kPu, 0x08, 4, kGetAndSet, {{{2, {0, 15, 1, 6}}}}},           // sharpness
        {kPu, 0x0A, 6, kGetAndSet, {{{2, {2800, 6500, 10, 4600}}}}},  // white-balance-temp, kelvin
        {kPu, kWhiteBalanceTempSelector, 12, kGetAndSet, {{{1, {0, 1, 1, 1}}}}},  // auto-white-balance-temp
        {kPu,
         kWhiteBalanceComponentSelector,
         13,
         kGetAndSet,
         {{{1, {0, 1, 1, 1}}}}},  // auto-white-balance-component
    }};
}

std::uint8_t unitId(const CameraOptions &options, const Control &control) {
    return control.unit == kCameraTerminal ? options.cameraTerminalId : options.processingUnitId;
}

bool hasControl(const CameraOptions &options, const Control &control) {
    if (control.unit != kCameraTerminal) {
        if (control.selector == kWhiteBalanceTempSelector) return options.hasAutoWhiteBalanceTemp;
        if (control.selector == kWhiteBalanceComponentSelector) return options.hasAutoWhiteBalanceComponent;
        return true;
    }
    if (control.selector == kExposureModeSelector) return options.hasExposureMode;
    if (control.selector == kPanTiltAbsoluteSelector) return options.hasPanTiltAbs;
    if (control.selector == kZoomAbsoluteSelector) return options.hasZoomAbs;
    return true;
}

std::optional<Control> findControl(const CameraOptions &options, std::uint8_t unit, std::uint8_t selector) {
    for (const Control &control : allControls(options.record))
        if (unitId(options, control) == unit && control.selector == selector && hasControl(options, control))
            return control;
    return std::nullopt;
}

Bytes controlBitmap(const CameraOptions &options, std::uint8_t unit, std::size_t size) {
    Bytes bitmap(size, 0);
    for (const Control &control : allControls(options.record)) {
        const std::size_t byte = control.enableBit / 8u;
        if (control.unit != unit || byte >= size || !hasControl(options, control)) continue;
        bitmap[byte] = static_cast<std::uint8_t>(bitmap[byte] | 1u << (control.enableBit % 8u));
    }
    return bitmap;
}

Bytes encode(const Control &control, std::int32_t model::Range::*property) {
    ByteWriter data(std::endian::little);
    for (const ControlField &field : control.fields)
        data.append(static_cast<std::uint32_t>(field.range.*property), field.bytes);
    return data.finished();
}

std::optional<std::array<std::int32_t, 2>> decodeSetting(const Control &control,
                                                         std::span<const std::uint8_t> data) {
    if (data.size() != control.size()) return std::nullopt;

    std::array<std::int32_t, 2> numbers{};
    std::size_t offset = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const ControlField &field = control.fields[i];
        if (field.bytes == 0) continue;

        numbers[i] = decodeField(field, data.subspan(offset, field.bytes));
        offset += field.bytes;
        if (numbers[i] < field.range.minimum || numbers[i] > field.range.maximum) return std::nullopt;
    }
    return numbers;
}

}  // namespace simulator
