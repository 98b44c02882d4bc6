#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/services.h"

namespace platform {

/// The system's /bin/bash.
class BashShell final : public CommandShell {
 public:
    /// `toolsFolder`: absolute path of a folder with commands of the package; the child looks there last, so
    /// that a command of the system with the same name wins. Empty: no such folder.
    explicit BashShell(std::string toolsFolder = {});

    /// Flushes the standard output first, so that lines printed before precede the child's. Fatal stop when
    /// bash cannot be started.
    std::int32_t run(const std::vector<std::string> &arguments) override;

 private:
    std::string toolsFolder_;
};

}  // namespace platform
