#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "usb/usb.h"

namespace usb {

/// A program that has the camera's file open. That need not mean that it streams at this moment.
struct ProgramHolding {
    int processId = 0;
    std::string name;  ///< as the kernel keeps it: at most 15 bytes, UTF-8 or not
};

/// What stands between this user and one device's VideoControl interface.
struct InterfaceReport {
    std::uint8_t interfaceNumber = 0;  ///< bInterfaceNumber

    /// The kernel driver that holds the interface: "uvcvideo" on an ordinary desktop, "usbfs" where another
    /// program has claimed it; nothing when nobody holds it.
    std::optional<std::string> driver;

    /// The file that opening the interface now would open: /dev/videoN where the kernel's driver holds it,
    /// /dev/bus/usb/BBB/DDD elsewhere. Empty where the driver offers no video node.
    std::string path;

    /// Outcome::done: this user may open it. Outcome::denied: no permission. Outcome::busy: held, by a driver
    /// without a video node or by another program (see `driver`). Anything else: the file is missing or
    /// cannot be opened.
    Outcome access = Outcome::failed;

    /// Who has `path` open, by process id ascending, this process left out.
    std::vector<ProgramHolding> programs;
    /// False when processes of other users may not be looked into, so that `programs` may lack some.
    bool sawEveryProgram = true;
};

/// Looks at the device at `locationId` (see usb::locationId()): opens the file and closes it again, but sends
/// the camera no request and moves nothing. Nothing when no device is there, or when the one there has no
/// VideoControl interface.
[[nodiscard]] std::optional<InterfaceReport> inspectInterface(std::uint32_t locationId);

}  // namespace usb
