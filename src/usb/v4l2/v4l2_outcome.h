#pragma once

#include "usb/usb.h"

namespace usb::v4l2 {

/// What errno means to the seam after a control ioctl that failed. EBUSY is the camera's own "not ready",
/// still said after all retries: Outcome::timedOut.
[[nodiscard]] Outcome outcomeOfRequest(int error);

/// The same after an attempt to open a video node.
[[nodiscard]] Outcome outcomeOfOpen(int error);

}  // namespace usb::v4l2
