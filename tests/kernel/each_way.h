#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "kernel/usb_bus.h"
#include "kernel/virtual_camera.h"
#include "ptz/ptz_functions.h"

namespace guest {

/// The backend that carries the requests to the camera.
enum class Way { uvcvideo, libusb };

/// Without uvcvideo in the kernel, only libusb can carry them; with it, libusb is refused.
inline void choose(Way way) {
    way == Way::uvcvideo ? loadDriver() : unloadDriver();
}

/// A test that runs once through each backend.
class EachWay : public ::testing::TestWithParam<Way> {
 protected:
    void SetUp() override { choose(GetParam()); }
};

inline const auto kBothWays = ::testing::Values(Way::uvcvideo, Way::libusb);

inline std::string wayName(const ::testing::TestParamInfo<Way> &info) {
    return info.param == Way::uvcvideo ? "uvcvideo" : "libusb";
}

/// libusb asks GET_INFO before every set; the driver asked it once, when it found the camera.
inline Way wayTaken(const VirtualCamera &camera) {
    return camera.transfers("GET_INFO", kPanTilt).empty() ? Way::uvcvideo : Way::libusb;
}

/// How long the call took.
template <typename Function>
[[nodiscard]] std::chrono::milliseconds timeOf(Function function) {
    const auto start = std::chrono::steady_clock::now();
    function();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
}

}  // namespace guest
