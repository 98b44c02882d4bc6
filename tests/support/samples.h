#pragma once

#include <filesystem>
#include <string>

#include "support/files.h"

namespace support {

inline std::filesystem::path samplePath(const std::string &name) {
    return std::filesystem::path(ZEL_TEST_DATA) / "scenes" / (name + ".presets");
}

/// A scene file that another tool has made.
[[nodiscard]] inline std::string sample(const std::string &name) {
    return contentOf(samplePath(name));
}

}  // namespace support
