#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "simulator/bytes.h"
#include "simulator/camera_options.h"

/// The controls of the simulated camera. One table gives the bmControls bitmaps, the answers to the range
/// requests and the check of a new setting, so that they cannot disagree.
namespace simulator {

/// Entity ids of a camera with the default options. unitId() gives the id that a camera with other options
/// uses in its descriptors and in requests (high byte of wIndex).
inline constexpr std::uint8_t kCameraTerminal = 1;
inline constexpr std::uint8_t kProcessingUnit = 2;
inline constexpr std::uint8_t kOutputTerminal = 3;

/// Control selectors that the model itself has to know (USB Video Class 1.1, appendix A.9.4).
inline constexpr std::uint8_t kZoomAbsoluteSelector = 0x0B;
inline constexpr std::uint8_t kPanTiltAbsoluteSelector = 0x0D;

/// One number inside a control's value, little-endian on the wire; signed where its minimum is below zero.
struct ControlField {
    std::uint8_t bytes = 0;  ///< 1, 2 or 4; 0: no such field
    model::Range range;      ///< its default is also the setting after power-on
};

struct Control {
    std::uint8_t unit = 0;
    std::uint8_t selector = 0;
    std::uint8_t enableBit = 0;  ///< number of its bit in the unit's bmControls
    std::uint8_t info = 0;       ///< the GET_INFO byte
    std::array<ControlField, 2> fields;

    [[nodiscard]] std::size_t size() const { return std::size_t{fields[0].bytes} + fields[1].bytes; }
};

inline constexpr std::size_t kControlCount = 14;

/// The whole table of a model, whether or not a camera's options leave something out.
[[nodiscard]] std::array<Control, kControlCount> allControls(const model::Record &record);

/// The id of the control's entity in a camera of these options.
[[nodiscard]] std::uint8_t unitId(const CameraOptions &options, const Control &control);

/// Whether a camera of these options has the control.
[[nodiscard]] bool hasControl(const CameraOptions &options, const Control &control);

/// The control with this unit id and selector; nothing if a camera of these options has none.
[[nodiscard]] std::optional<Control> findControl(const CameraOptions &options, std::uint8_t unit,
                                                 std::uint8_t selector);

/// The bitmap of an entity, `size` bytes long, bit 0 of the first byte first.
[[nodiscard]] Bytes controlBitmap(const CameraOptions &options, std::uint8_t unit, std::size_t size);

/// The wire bytes of one property of every field, e.g. `encode(control, &model::Range::minimum)`.
[[nodiscard]] Bytes encode(const Control &control, std::int32_t model::Range::*property);

/// The numbers of a setting; nothing when the length is wrong or a field lies outside its range. A number
/// that is not a multiple of the resolution passes: the camera keeps it as it is.
[[nodiscard]] std::optional<std::array<std::int32_t, 2>> decodeSetting(const Control &control,
                                                                       std::span<const std::uint8_t> data);

}  // namespace simulator
