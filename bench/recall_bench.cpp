// A recall, one pan/tilt order and one zoom order, beside what a program would do that knows the camera: the
// same transfers, straight. Runs in the emulated machine that bench/recall.sh prepares; compare the rows of
// one run.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <libusb.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <span>

#include "comparison.h"
#include "model/camera_models.h"
#include "ptz/ptz_functions.h"
#include "usb/system_registry.h"
#include "uvc/uvc_controller.h"

namespace {

constexpr std::int32_t kPan = 36000;
constexpr std::int32_t kTilt = -18000;
constexpr std::int32_t kZoom = 300;

void BM_Recall(benchmark::State &state) {
    // One for the life of the process, as in the application: to make it costs more than a recall.
    static const std::shared_ptr<usb::DeviceRegistry> registry = usb::makeSystemRegistry();
    UVCController::useDeviceRegistry(registry);
    for (auto _ : state)
        if (!setPanTiltPosition(kPan, kTilt) || !setZoomPosition(kZoom)) state.SkipWithError("refused");
}

bool setByDriver(std::span<v4l2_ext_control> controls) {
    const int file = ::open("/dev/video0", O_RDWR | O_NONBLOCK | O_CLOEXEC);
    v4l2_ext_controls list{};
    list.which = V4L2_CTRL_WHICH_CUR_VAL;
    list.count = static_cast<std::uint32_t>(controls.size());
    list.controls = controls.data();
    const bool done = ::ioctl(file, VIDIOC_S_EXT_CTRLS, &list) == 0;
    ::close(file);
    return done;
}

void BM_BareDriver(benchmark::State &state) {
    std::array<v4l2_ext_control, 2> panTilt{};
    panTilt[0].id = V4L2_CID_PAN_ABSOLUTE;
    panTilt[0].value = kPan;
    panTilt[1].id = V4L2_CID_TILT_ABSOLUTE;
    panTilt[1].value = kTilt;
    std::array<v4l2_ext_control, 1> zoom{};
    zoom[0].id = V4L2_CID_ZOOM_ABSOLUTE;
    zoom[0].value = kZoom;
    for (auto _ : state)
        if (!setByDriver(panTilt) || !setByDriver(zoom)) state.SkipWithError("refused");
}

/// The six requests that are made of every order: information, limits, resolution, default, and the order
/// itself.
bool setByLibusb(libusb_context *context, std::uint8_t selector, std::span<const std::uint8_t> order) {
    const model::Record &record = model::kRecords.front();
    libusb_device_handle *const device =
        libusb_open_device_with_vid_pid(context, record.vendorId, record.productId);
    if (device == nullptr) return false;
    bool done = libusb_claim_interface(device, 0) == LIBUSB_SUCCESS;
    std::array<std::uint8_t, 8> data{};
    const auto transfer = [&](std::uint8_t type, std::uint8_t request, std::size_t size) {
        const int moved =
            libusb_control_transfer(device, type, request, static_cast<std::uint16_t>(selector << 8), 0x0100,
                                    data.data(), static_cast<std::uint16_t>(size), 2000);
        done = done && moved == static_cast<int>(size);
    };
    transfer(0xA1, 0x86, 1);
    for (const std::uint8_t request : std::to_array<std::uint8_t>({0x82, 0x83, 0x84, 0x87}))
        transfer(0xA1, request, order.size());
    std::ranges::copy(order, data.begin());
    transfer(0x21, 0x01, order.size());
    libusb_release_interface(device, 0);
    libusb_close(device);
    return done;
}

void BM_BareLibusb(benchmark::State &state) {
    const std::array<std::uint8_t, 8> panTilt{0xA0, 0x8C, 0x00, 0x00, 0xB0, 0xB9, 0xFF, 0xFF};
    const std::array<std::uint8_t, 2> zoom{0x2C, 0x01};
    libusb_context *context = nullptr;
    libusb_init(&context);
    for (auto _ : state)
        if (!setByLibusb(context, 0x0D, panTilt) || !setByLibusb(context, 0x0B, zoom))
            state.SkipWithError("refused");
    libusb_exit(context);
}

BENCHMARK(BM_Recall)->Apply(bench::oneByOne);
BENCHMARK(BM_BareDriver)->Apply(bench::oneByOne);
BENCHMARK(BM_BareLibusb)->Apply(bench::oneByOne);

}  // namespace

int main(int argc, char **argv) {
    return bench::runAndCompare(
        argc, argv,
        {{"recall / the bare orders, through the kernel's driver", "BM_Recall", {"BM_BareDriver"}, 1.5},
         {"recall / the bare requests, through libusb", "BM_Recall", {"BM_BareLibusb"}, 1.15}});
}
