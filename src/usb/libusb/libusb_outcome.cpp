#include "usb/libusb/libusb_outcome.h"

#include <libusb.h>

namespace usb {

Outcome outcomeOf(int libusbResult) {
    if (libusbResult >= 0) return Outcome::done;
    switch (libusbResult) {
        case LIBUSB_ERROR_PIPE:
            return Outcome::refused;
        case LIBUSB_ERROR_TIMEOUT:
            return Outcome::timedOut;
        case LIBUSB_ERROR_NO_DEVICE:
            return Outcome::disconnected;
        case LIBUSB_ERROR_ACCESS:
            return Outcome::denied;
        case LIBUSB_ERROR_BUSY:
            return Outcome::busy;
        default:
            return Outcome::failed;
    }
}

Outcome transferOutcome(int libusbResult, std::uint16_t length) {
    if (libusbResult < 0) return outcomeOf(libusbResult);
    // Half a value is no value: what the device left out would be taken for what it said.
    return libusbResult == length ? Outcome::done : Outcome::failed;
}

}  // namespace usb
