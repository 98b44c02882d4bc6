#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace uvc {

/// A unit's bmControls: one bit a control, least significant bit of the first byte first.
using ControlBitmap = std::vector<std::uint8_t>;

/// What the library wants to know from a device's class-specific VideoControl descriptors.
struct VideoControlDescriptors {
    std::uint16_t uvcVersion = 0;                       ///< bcdUVC
    std::optional<ControlBitmap> terminalBitmap;        ///< of the last input terminal that has one
    std::optional<ControlBitmap> processingUnitBitmap;  ///< of the last processing unit that has one
};

/// Reads class-specific VideoControl descriptors (USB Video Class 1.1, section 3.7.2) as a device gave them;
/// nothing in them is trusted. Nothing when the first class-specific one is not a whole header. Behind the
/// header, reading ends at wTotalLength, at the end of the bytes, or at a descriptor that is shorter than its
/// own two first bytes or reaches over the end; a unit whose bitmap would reach over its own descriptor is
/// passed over.
[[nodiscard]] std::optional<VideoControlDescriptors> parseVideoControlDescriptors(
    std::span<const std::uint8_t> bytes);

}  // namespace uvc
