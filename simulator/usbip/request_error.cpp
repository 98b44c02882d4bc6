#include "simulator/usbip/request_error.h"

#include "simulator/camera_controls.h"
#include "simulator/requests.h"

namespace simulator::usbip {

RequestError requestErrorOf(const CameraOptions &options, const usb::SetupPacket &setup,
                            std::span<const std::uint8_t> data) {
    const std::uint8_t unit = unitOf(setup);
    if (unit == 0) return RequestError::invalidControl;  // the interface has none but this one
    if (unit != options.cameraTerminalId && unit != options.processingUnitId)
        return RequestError::invalidUnit;

    const auto control = findControl(options, unit, selectorOf(setup));
    if (!control) return RequestError::invalidControl;
    if (isAnswered(setup) || setup.request != request::kSetCur || data.size() != control->size())
        return RequestError::invalidRequest;
    if (!decodeSetting(*control, data)) return RequestError::outOfRange;
    // A valid value, and yet a stall: the camera refuses to be moved at present.
    return options.notReady ? RequestError::notReady : RequestError::wrongState;
}

}  // namespace simulator::usbip
