#pragma once

#include <optional>
#include <span>
#include <string>

#include "simulator/usbip/faults.h"
#include "simulator/usbip/protocol.h"

namespace simulator::usbip {

/// What the program was started with.
struct CommandLine {
    std::uint16_t port = kUsualPort;
    unsigned cameras = 1;
    CameraOptions options;  ///< of every camera
    std::string logFile;    ///< empty: standard output
};

/// Nothing: `arguments` (without the program's name) are not valid.
[[nodiscard]] std::optional<CommandLine> readCommandLine(std::span<const char *const> arguments);

}  // namespace simulator::usbip
