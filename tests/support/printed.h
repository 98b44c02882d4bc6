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

}  // namespace support
