#pragma once

#include <gtest/gtest.h>

#include <string>

namespace support {

/// Everything that `action` prints on standard output.
template <typename Action>
std::string printedBy(Action action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

/// How standard error ends when a signal ends the process and the program says no more. An emulator adds a
/// line of its own.
#ifdef ZEL_EMULATED
inline const std::string kSilentEnd = "(qemu: .*)?$";
#else
inline const std::string kSilentEnd = "$";
#endif

}  // namespace support
