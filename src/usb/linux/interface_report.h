#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "usb/usb.h"

namespace usb {

class LinuxRegistry;

/// A program that has the camera's file open.
struct ProgramHolding {
    int processId = 0;
    std::string name;  ///< as the kernel keeps it: at most 15 bytes, UTF-8 or not

    /// Whether it has picture buffers of the camera in its memory, as most programs do while they stream.
    /// One that takes its pictures by other means streams unseen.
    bool streams = false;
};

/// What stands between this user and one device's VideoControl interface.
struct InterfaceReport {
    std::uint8_t interfaceNumber = 0;  ///< bInterfaceNumber

    /// The kernel driver that holds the interface: "uvcvideo" on an ordinary desktop, "usbfs" where another
    /// program has claimed it; nothing when nobody holds it.
    std::optional<std::string> driver;

    /// The file that opening the interface now would open: /dev/videoN where a kernel driver offers one,
    /// /dev/bus/usb/BBB/DDD elsewhere. Empty where the driver offers no video node.
    std::string path;

    /// Outcome::done: this user may open it. Outcome::denied: no permission. Outcome::busy: held, by a driver
    /// without a video node or by another program (see `driver`). Anything else: the file is missing or
    /// cannot be opened.
    Outcome access = Outcome::failed;

    /// Who has `path` open, by process id ascending, this process left out.
    std::vector<ProgramHolding> programs;
    /// False when processes of other users may not be looked into or not even seen, so that `programs` may
    /// lack some.
    bool sawEveryProgram = true;
};

/// Looks at the first device of the registry at `locationId` (see usb::locationId(), which may give a hub and
/// a camera the same) that has a VideoControl interface: opens the file and closes it again, but sends the
/// camera no request and moves nothing. Nothing when there is no such device.
[[nodiscard]] std::optional<InterfaceReport> inspectInterface(const LinuxRegistry &registry,
                                                              std::uint32_t locationId);

}  // namespace usb
