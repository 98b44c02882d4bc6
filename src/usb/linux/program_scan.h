#pragma once

#include <string>
#include <vector>

#include "usb/interface_report.h"

namespace usb {

/// The programs that have a file open.
struct ProgramScan {
    std::vector<ProgramHolding> programs;  ///< by process id ascending, this process left out
    bool sawEveryProgram = true;           ///< false: some processes may not be looked into or seen
};

/// Looks through /proc for processes that have `path` open, under whatever name.
[[nodiscard]] ProgramScan findProgramsHolding(const std::string &path);

}  // namespace usb
