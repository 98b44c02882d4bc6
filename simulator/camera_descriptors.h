#pragma once

#include <cstdint>
#include <vector>

#include "simulator/camera_options.h"

/// The descriptors of the simulated camera, a high-speed device with one video function. Every length, total
/// and bitmap in them is computed.
namespace simulator {

inline constexpr std::uint8_t kVideoControlInterface = 0;
inline constexpr std::uint8_t kVideoStreamingInterface = 1;
inline constexpr std::uint8_t kStatusEndpoint = 0x81;
inline constexpr std::uint8_t kVideoEndpoint = 0x82;

/// The one format: YUY2, uncompressed, two bytes a pixel, at one frame rate.
inline constexpr std::uint16_t kFrameWidth = 160;
inline constexpr std::uint16_t kFrameHeight = 120;
inline constexpr std::uint32_t kFramesPerSecond = 10;
inline constexpr std::uint32_t kFrameBytes = std::uint32_t{kFrameWidth} * kFrameHeight * 2;

/// Standard device descriptor (USB 2.0, section 9.6.1).
[[nodiscard]] std::vector<std::uint8_t> buildDeviceDescriptor(const CameraOptions &options);

/// The class-specific descriptors between the VideoControl interface descriptor and its endpoint: header,
/// camera terminal, processing unit, output terminal.
[[nodiscard]] std::vector<std::uint8_t> buildVideoControlDescriptors(const CameraOptions &options);

/// The configuration descriptor and all that comes with it.
[[nodiscard]] std::vector<std::uint8_t> buildConfigurationDescriptor(const CameraOptions &options);

}  // namespace simulator
