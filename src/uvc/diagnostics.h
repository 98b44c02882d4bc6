#pragma once

#include <initializer_list>
#include <string_view>

namespace uvc {

/// Prints on standard error those lines of a scan that its caller asked for.
class Diagnostics {
 public:
    /// `flags`: kShowWarnings, kShowInformation or both.
    explicit Diagnostics(unsigned flags) : flags_(flags) {}

    /// Each prints its pieces joined, behind "WARNING: " or "INFO: ", as one line.
    void warning(std::initializer_list<std::string_view> pieces) const;
    void information(std::initializer_list<std::string_view> pieces) const;

 private:
    unsigned flags_;
};

}  // namespace uvc
