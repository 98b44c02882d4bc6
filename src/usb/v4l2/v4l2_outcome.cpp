#include "usb/v4l2/v4l2_outcome.h"

#include <cerrno>

namespace usb::v4l2 {

Outcome outcomeOfRequest(int error) {
    // After a stall the driver asks the camera for its error code, and each code has a number of its own.
    switch (error) {
        case 0:
            return Outcome::done;
        case EINVAL:   // no such control on this camera, or a value that it does not take
        case ERANGE:   // out of range
        case EACCES:   // read-only, write-only, disabled while something automatic is on, or as EILSEQ
        case EILSEQ:   // not in the camera's present state, in kernels such as 6.1
        case EREMOTE:  // not in this state of power
        case EIO:      // no such unit, control or request on the camera
        case EPIPE:    // a stall without a reason given
            return Outcome::refused;
        case ENODEV:
        case ENXIO:
        case ESHUTDOWN:
            return Outcome::disconnected;
        case EBUSY:
        case ETIMEDOUT:
            return Outcome::timedOut;
        default:  // EPROTO, EOVERFLOW: the transfer failed
            return Outcome::failed;
    }
}

Outcome outcomeOfOpen(int error) {
    switch (error) {
        case 0:
            return Outcome::done;
        case EACCES:
        case EPERM:
            return Outcome::denied;
        case ENODEV:
        case ENXIO:
            return Outcome::disconnected;
        case EBUSY:
            return Outcome::busy;
        default:  // ENOENT: sysfs knows the node and /dev does not
            return Outcome::failed;
    }
}

}  // namespace usb::v4l2
