#pragma once

#include <cstdint>

#include "simulator/bytes.h"
#include "simulator/camera_options.h"

/// The descriptors of the simulated camera, a high-speed device with one video function. Every length, total
/// and bitmap in them is computed.
namespace simulator {

/// bInterfaceNumber of the VideoStreaming interface: the one after VideoControl.
[[nodiscard]] std::uint8_t videoStreamingInterface(const CameraOptions &options);

inline constexpr std::uint8_t kStatusEndpoint = 0x81;
inline constexpr std::uint8_t kVideoEndpoint = 0x82;

/// The one format: YUY2, uncompressed, two bytes a pixel, at one frame rate.
inline constexpr std::uint8_t kFormatIndex = 1;
inline constexpr std::uint8_t kFrameIndex = 1;
inline constexpr std::uint16_t kFrameWidth = 160;
inline constexpr std::uint16_t kFrameHeight = 120;
inline constexpr std::uint32_t kFramesPerSecond = 10;
inline constexpr std::uint32_t kFrameInterval = 10'000'000 / kFramesPerSecond;  ///< in units of 100 ns
inline constexpr std::uint32_t kFrameBytes = std::uint32_t{kFrameWidth} * kFrameHeight * 2;

/// The one configuration and the product's name, by the numbers used in descriptors and requests.
inline constexpr std::uint8_t kConfigurationValue = 1;
inline constexpr std::uint8_t kProductString = 1;

/// Clock of the camera, as the VideoControl header and the streaming negotiation give it.
inline constexpr std::uint32_t kClockHz = 48'000'000;

/// Standard device descriptor (USB 2.0, section 9.6.1).
[[nodiscard]] Bytes buildDeviceDescriptor(const CameraOptions &options);

/// The class-specific descriptors between the VideoControl interface descriptor and its endpoint: header
/// (where the options have one), camera terminal, processing unit, output terminal.
[[nodiscard]] Bytes buildVideoControlDescriptors(const CameraOptions &options);

/// The configuration descriptor and all that comes with it.
[[nodiscard]] Bytes buildConfigurationDescriptor(const CameraOptions &options);

}  // namespace simulator
