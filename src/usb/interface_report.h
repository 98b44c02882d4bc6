#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "usb/usb.h"

namespace usb {

/// A program that has the camera's file open.
struct ProgramHolding {
    int processId = 0;
    std::string name;  ///< as the system keeps it, possibly cut short, UTF-8 or not

    /// Whether it has picture buffers of the camera in its memory, as most programs do while they stream.
    /// One that takes its pictures by other means streams unseen.
    bool streams = false;
};

/// Who holds an interface.
enum class Holder {
    nobody,
    cameraDriver,  ///< the system's own driver for cameras of this class
    otherDriver,   ///< any other driver of the system's
    program,       ///< another program, which has claimed it
};

/// What carries the requests to an interface.
enum class Backend {
    none,    ///< nothing: a driver holds it and lets nobody through
    driver,  ///< the driver that holds it, which several programs may use at once
    direct,  ///< no driver: the program itself claims the interface
};

/// What stands between this user and one device's VideoControl interface.
struct InterfaceReport {
    std::uint8_t interfaceNumber = 0;  ///< bInterfaceNumber

    Holder holder = Holder::nobody;
    std::string holderName;  ///< what the system calls the holder's driver; empty: nobody holds it

    /// What opening the interface now would make use of.
    Backend backend = Backend::none;
    /// The file that it would open for that; empty with Backend::none.
    std::string path;

    /// Outcome::done: this user may open it. Outcome::denied: no permission. Outcome::busy: held, by a driver
    /// that lets nobody through or by another program (see `holder`). Anything else: the file is missing or
    /// cannot be opened.
    Outcome access = Outcome::failed;

    /// Who has `path` open, by process id ascending, this process left out.
    std::vector<ProgramHolding> programs;
    /// False when processes of other users may not be looked into or not even seen, so that `programs` may
    /// lack some.
    bool sawEveryProgram = true;
};

}  // namespace usb
