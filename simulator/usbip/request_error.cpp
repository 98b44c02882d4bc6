#include "simulator/usbip/request_error.h"

#include "simulator/camera_controls.h"
#include "simulator/usbip/requests.h"

namespace simulator::usbip {

RequestError requestErrorOf(const CameraOptions &options, const usb::SetupPacket &setup,
                            std::span<const std::uint8_t> data) {
    const auto unit = static_cast<std::uint8_t>(setup.index >> 8);
    const auto selector = static_cast<std::uint8_t>(setup.value >> 8);
    if (unit == 0) return RequestError::invalidControl;  // the interface has none but this one
    if (unit != options.cameraTerminalId && unit != options.processingUnitId)
        return RequestError::invalidUnit;

    const auto control = findControl(options, unit, selector);
    if (!control) return RequestError::invalidControl;
    if (isAnswered(setup) || setup.request != request::kSetCur || data.size() != control->size())
        return RequestError::invalidRequest;
    if (!decodeSetting(*control, data)) return RequestError::outOfRange;
    // A valid value, and yet a stall: the camera refuses to be moved at present.
    return options.notReady ? RequestError::notReady : RequestError::wrongState;
}

}  // namespace simulator::usbip
