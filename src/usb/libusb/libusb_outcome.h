#pragma once

#include "usb/usb.h"

namespace usb {

/// What a libusb result means to the seam: zero and above is Outcome::done, LIBUSB_ERROR_PIPE (a stall) is
/// Outcome::refused, and so on; a code without a meaning of its own is Outcome::failed.
[[nodiscard]] Outcome outcomeOf(int libusbResult);

/// The same for a control transfer, whose result is the number of bytes moved: anything but `length` is a
/// short answer and thus Outcome::failed.
[[nodiscard]] Outcome transferOutcome(int libusbResult, std::uint16_t length);

}  // namespace usb
