#pragma once

#include <cstdio>
#include <string>

namespace scenes {

/// One diagnostic line on standard output.
inline void printLine(const std::string &text) {
    std::fputs((text + "\n").c_str(), stdout);
}

}  // namespace scenes
