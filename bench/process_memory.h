#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace bench {

/// Megabytes of a process ("self", or its number), by a line of its status: "VmRSS:" for what it holds now,
/// "VmHWM:" for the most so far. Shared pages count whole: what lies in them does not move with other
/// programs. 0: there is no such process.
inline double megabytes(const std::string &process, std::string_view line) {
    std::ifstream status("/proc/" + process + "/status");
    for (std::string word; status >> word;) {
        double kilobytes = 0;
        if (word == line && status >> kilobytes) return kilobytes / 1024;
    }
    return 0;
}

}  // namespace bench
