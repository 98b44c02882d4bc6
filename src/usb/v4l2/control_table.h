#pragma once

#include <linux/videodev2.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Which V4L2 controls stand for which UVC controls, as the kernel's uvcvideo driver maps them. The driver
/// scales nothing, so that a V4L2 number is the raw UVC number wherever the coding is Coding::number.
namespace usb::v4l2 {

/// The unit ids that the camera library puts into its requests. They name the kind of unit, and here
/// they reach it whatever id the camera's descriptors give it: the kernel knows that one itself.
inline constexpr std::uint8_t kCameraTerminal = 1;
inline constexpr std::uint8_t kProcessingUnit = 2;

/// How a V4L2 number lies in the control's bytes.
enum class Coding : std::uint8_t {
    number,        ///< `width` bytes from `offset`, little-endian
    exposureMode,  ///< one byte, a bit a mode (1, 2, 4, 8), where V4L2 counts the modes in another order
    speed,         ///< a signed direction byte and a size byte behind it, where V4L2 has one signed number
    zoomSpeed,     ///< the same with the digital-zoom byte, which V4L2 does not know, between the two
};

/// One control, or one half of a control that V4L2 cuts in two. Signs and widths are the kernel's.
struct Row {
    std::uint8_t unit;  ///< kCameraTerminal or kProcessingUnit
    std::uint8_t selector;
    std::uint8_t controlBytes;  ///< size of the whole control
    std::uint8_t offset;        ///< where this part starts in it
    std::uint8_t width;         ///< bytes of this part
    bool isSigned;
    Coding coding;
    std::uint32_t id;  ///< V4L2_CID_...
};

// clang-format off
inline constexpr std::array kRows{
    // unit, selector, bytes, offset, width, signed, coding, V4L2 control
    Row{kCameraTerminal, 0x02, 1, 0, 1, false, Coding::exposureMode, V4L2_CID_EXPOSURE_AUTO},
    Row{kCameraTerminal, 0x03, 1, 0, 1, false, Coding::number, V4L2_CID_EXPOSURE_AUTO_PRIORITY},
    Row{kCameraTerminal, 0x04, 4, 0, 4, false, Coding::number, V4L2_CID_EXPOSURE_ABSOLUTE},
    Row{kCameraTerminal, 0x06, 2, 0, 2, false, Coding::number, V4L2_CID_FOCUS_ABSOLUTE},
    Row{kCameraTerminal, 0x08, 1, 0, 1, false, Coding::number, V4L2_CID_FOCUS_AUTO},
    Row{kCameraTerminal, 0x09, 2, 0, 2, false, Coding::number, V4L2_CID_IRIS_ABSOLUTE},
    Row{kCameraTerminal, 0x0A, 1, 0, 1, true, Coding::number, V4L2_CID_IRIS_RELATIVE},
    Row{kCameraTerminal, 0x0B, 2, 0, 2, false, Coding::number, V4L2_CID_ZOOM_ABSOLUTE},
    Row{kCameraTerminal, 0x0C, 3, 0, 3, true, Coding::zoomSpeed, V4L2_CID_ZOOM_CONTINUOUS},
    Row{kCameraTerminal, 0x0D, 8, 0, 4, true, Coding::number, V4L2_CID_PAN_ABSOLUTE},
    Row{kCameraTerminal, 0x0D, 8, 4, 4, true, Coding::number, V4L2_CID_TILT_ABSOLUTE},
    Row{kCameraTerminal, 0x0E, 4, 0, 2, true, Coding::speed, V4L2_CID_PAN_SPEED},
    Row{kCameraTerminal, 0x0E, 4, 2, 2, true, Coding::speed, V4L2_CID_TILT_SPEED},
    Row{kCameraTerminal, 0x11, 1, 0, 1, false, Coding::number, V4L2_CID_PRIVACY},
    Row{kProcessingUnit, 0x01, 2, 0, 2, false, Coding::number, V4L2_CID_BACKLIGHT_COMPENSATION},
    Row{kProcessingUnit, 0x02, 2, 0, 2, true, Coding::number, V4L2_CID_BRIGHTNESS},
    Row{kProcessingUnit, 0x03, 2, 0, 2, false, Coding::number, V4L2_CID_CONTRAST},
    Row{kProcessingUnit, 0x04, 2, 0, 2, false, Coding::number, V4L2_CID_GAIN},
    Row{kProcessingUnit, 0x05, 1, 0, 1, false, Coding::number, V4L2_CID_POWER_LINE_FREQUENCY},
    Row{kProcessingUnit, 0x06, 2, 0, 2, true, Coding::number, V4L2_CID_HUE},
    Row{kProcessingUnit, 0x07, 2, 0, 2, false, Coding::number, V4L2_CID_SATURATION},
    Row{kProcessingUnit, 0x08, 2, 0, 2, false, Coding::number, V4L2_CID_SHARPNESS},
    Row{kProcessingUnit, 0x09, 2, 0, 2, false, Coding::number, V4L2_CID_GAMMA},
    Row{kProcessingUnit, 0x0A, 2, 0, 2, false, Coding::number, V4L2_CID_WHITE_BALANCE_TEMPERATURE},
    Row{kProcessingUnit, 0x0B, 1, 0, 1, false, Coding::number, V4L2_CID_AUTO_WHITE_BALANCE},
    Row{kProcessingUnit, 0x0C, 4, 0, 2, true, Coding::number, V4L2_CID_BLUE_BALANCE},
    Row{kProcessingUnit, 0x0C, 4, 2, 2, true, Coding::number, V4L2_CID_RED_BALANCE},
    Row{kProcessingUnit, 0x0D, 1, 0, 1, false, Coding::number, V4L2_CID_AUTO_WHITE_BALANCE},
    Row{kProcessingUnit, 0x10, 1, 0, 1, false, Coding::number, V4L2_CID_HUE_AUTO},
};
// clang-format on

static_assert(kRows.size() == 29, "26 controls, three of which V4L2 cuts in two");
static_assert(std::ranges::count(kRows, 0, &Row::offset) == 26, "a row for the start of each control");

/// The rows of one control, in the order of their offsets; none where the kernel gives it no V4L2 control.
[[nodiscard]] constexpr std::span<const Row> rowsOf(std::uint8_t unit, std::uint8_t selector) {
    std::size_t first = 0;
    while (first < kRows.size() && (kRows[first].unit != unit || kRows[first].selector != selector)) ++first;
    std::size_t end = first;
    while (end < kRows.size() && kRows[end].unit == unit && kRows[end].selector == selector) ++end;
    return std::span(kRows).subspan(first, end - first);
}

}  // namespace usb::v4l2
