#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "usb/v4l2/control_table.h"

/// Between the bytes of a UVC control, in wire order, and V4L2's numbers. Pure: no device is asked. `data` is
/// always the whole control, `row.controlBytes` long.
namespace usb::v4l2 {

/// The V4L2 number that says what `data` says. Nothing where V4L2 has no number for it: a byte that is no
/// exposure mode, or digital zoom wanted.
[[nodiscard]] std::optional<std::int32_t> numberFrom(const Row &row, std::span<const std::uint8_t> data);

/// Puts a setting into `data`, and leaves the bytes of other rows alone. False where the number has no bytes:
/// an exposure mode that USB does not have.
[[nodiscard]] bool putNumber(const Row &row, std::int64_t number, std::span<std::uint8_t> data);

/// Puts a minimum, maximum, step or default into `data`. As putNumber(), but for speeds, whose range is that
/// of the size alone: the direction byte is 0.
[[nodiscard]] bool putLimit(const Row &row, std::int64_t number, std::span<std::uint8_t> data);

/// The number, or the nearest of the limits that V4L2 gave for the row where it lies outside them: the kernel
/// itself would take a number below an unsigned minimum for the highest one. Limits that contradict one
/// another change nothing.
///
/// Nothing where a speed or an exposure mode lies outside: it has no nearest, and a "stop" bent to fit would
/// start the motor. The kernel takes a camera's lowest speed for the lower limit (negated for pan and tilt,
/// as it is for zoom), so that fast negative speeds, and zoom's "stop", may lie outside.
[[nodiscard]] std::optional<std::int32_t> nearestWithin(const Row &row, std::int32_t number,
                                                        std::int64_t minimum, std::int64_t maximum);

/// The bit of the UVC exposure mode that V4L2 numbers `mode`; 0 where there is none.
[[nodiscard]] std::uint8_t exposureModeBit(std::int64_t mode);
inline constexpr std::uint32_t kExposureModes = 4;

/// The GET_INFO byte (USB Video Class 1.1, section 4.1.2) for V4L2_CTRL_FLAG_... flags: GET and SET
/// supported, disabled because something automatic is on, changes by itself.
[[nodiscard]] std::uint8_t infoFrom(std::uint32_t flags);

}  // namespace usb::v4l2
