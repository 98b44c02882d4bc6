#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace usb {

/// A unit's bmControls: one bit a control, least significant bit of the first byte first.
using ControlBitmap = std::vector<std::uint8_t>;

/// Whether the bit is set; false behind the bitmap's end.
[[nodiscard]] bool hasControl(const ControlBitmap &bitmap, std::size_t bit);

/// What is read of a device's class-specific VideoControl descriptors.
struct VideoControlDescriptors {
    std::uint16_t uvcVersion = 0;                       ///< bcdUVC
    std::optional<ControlBitmap> terminalBitmap;        ///< of the last input terminal that has one
    std::optional<ControlBitmap> processingUnitBitmap;  ///< of the last processing unit that has one
};

/// Reads class-specific VideoControl descriptors (USB Video Class 1.1, section 3.7.2) as a device gave them;
/// nothing in them is trusted. Nothing when the first class-specific one is not a whole header. Reading ends
/// at wTotalLength, at the end of the bytes, or at a descriptor whose bLength is below 2 or reaches past the
/// end. A unit whose bitmap reaches past its own descriptor is skipped.
[[nodiscard]] std::optional<VideoControlDescriptors> parseVideoControlDescriptors(
    std::span<const std::uint8_t> bytes);

}  // namespace usb
