#pragma once

#include <cstdint>
#include <span>

#include "simulator/camera_options.h"
#include "usb/usb.h"

namespace simulator::usbip {

/// Selector of VC_REQUEST_ERROR_CODE_CONTROL on the VideoControl interface itself (unit 0), by which a host
/// asks why the camera stalled (USB Video Class 1.1, section 4.2.1.2).
inline constexpr std::uint8_t kRequestErrorSelector = 0x02;

enum class RequestError : std::uint8_t {
    none = 0,
    notReady = 1,
    wrongState = 2,
    outOfRange = 4,
    invalidUnit = 5,
    invalidControl = 6,
    invalidRequest = 7,
};

/// Why a camera of these options stalled a class request to its VideoControl interface. `data` is what came
/// with it.
[[nodiscard]] RequestError requestErrorOf(const CameraOptions &options, const usb::SetupPacket &setup,
                                          std::span<const std::uint8_t> data);

}  // namespace simulator::usbip
