#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "kernel/usb_bus.h"
#include "kernel/virtual_camera.h"
#include "ptz/ptz_functions.h"

namespace guest {

/// The backend that carries the requests to the camera.
enum class Backend { uvcvideo, libusb };

/// Without uvcvideo in the kernel, only libusb can carry them; with it, libusb is refused.
inline void choose(Backend backend) {
    backend == Backend::uvcvideo ? loadDriver() : unloadDriver();
}

/// A test that runs once through each backend.
class EachBackend : public ::testing::TestWithParam<Backend> {
 protected:
    void SetUp() override { choose(GetParam()); }
};

inline const auto kBothBackends = ::testing::Values(Backend::uvcvideo, Backend::libusb);

inline std::string backendName(const ::testing::TestParamInfo<Backend> &info) {
    return info.param == Backend::uvcvideo ? "uvcvideo" : "libusb";
}

/// libusb asks GET_INFO before every set; the driver asked it once, when it found the camera.
inline Backend backendTaken(const VirtualCamera &camera) {
    return camera.transfers("GET_INFO", kPanTilt).empty() ? Backend::uvcvideo : Backend::libusb;
}

/// How long the call took.
template <typename Function>
[[nodiscard]] std::chrono::milliseconds timeOf(Function function) {
    const auto start = std::chrono::steady_clock::now();
    function();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
}

}  // namespace guest
