#include "ptz/ptz_functions.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "support/simulated_camera.h"

namespace {

using simulator::CameraOptions;
using support::SimulatedCamera;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

constexpr std::uint8_t kGetInfo = 0x86;

std::uint32_t littleEndian(const std::vector<std::uint8_t> &data, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = size; i-- > 0;) value = value << 8 | data.at(at + i);
    return value;
}

TEST(PtzFunctions, SetSendsOneRequestWithBothAxesClampedAndRoundedToTheCamerasRange) {
    SimulatedCamera bench;
    ASSERT_TRUE(setPanTiltPosition(-5000, 99999999));
    ASSERT_EQ(bench.panTiltSets(), 1);
    const auto &set = bench.camera->transfers().back();
    EXPECT_EQ(set.setup, (usb::SetupPacket{0x21, 0x01, 0x0D00, 0x0100, 8}));
    EXPECT_EQ(static_cast<std::int32_t>(littleEndian(set.data, 0, 4)), -3600);  // negatives go toward zero
    EXPECT_EQ(static_cast<std::int32_t>(littleEndian(set.data, 4, 4)), 324000);

    for (const auto &[zoom, sent] : {std::pair(60000, 1000u), std::pair(-5, 1000u), std::pair(65536, 0u)}) {
        bench.camera->forgetTransfers();
        ASSERT_TRUE(setZoomPosition(zoom));
        ASSERT_EQ(bench.zoomSets(), 1);
        EXPECT_EQ(littleEndian(bench.camera->transfers().back().data, 0, 2), sent) << zoom;
        EXPECT_EQ(getZoomPosition(), std::to_string(sent));
    }
    EXPECT_EQ(bench.bus->openHandles(), 0);
}

TEST(PtzFunctions, DataListsTheRangesAndKeepsTheShortenedMaximumPan) {
    SimulatedCamera bench;
    EXPECT_EQ(getPanTiltData(), "-612000,12000,3600,0,-108000,324000,3600,0");
    EXPECT_EQ(getZoomData(), "0,1000,1,0");
}

TEST(PtzFunctions, WithoutASupportedCameraNothingIsAnsweredOrPrinted) {
    CameraOptions foreign;
    foreign.record.productId ^= 1;
    for (const bool foreignCamera : {false, true}) {
        SimulatedCamera bench(foreignCamera ? foreign : CameraOptions{});
        if (!foreignCamera) bench.bus->unplug(bench.camera);
        CaptureStderr();
        EXPECT_EQ(getPanTiltPosition(), std::nullopt);
        EXPECT_EQ(getZoomPosition(), std::nullopt);
        EXPECT_EQ(getPanTiltData(), std::nullopt);
        EXPECT_EQ(getZoomData(), std::nullopt);
        EXPECT_FALSE(setPanTiltPosition(0, 0));
        EXPECT_FALSE(setZoomPosition(0));
        EXPECT_EQ(GetCapturedStderr(), "");
    }
}

TEST(PtzFunctions, TheLastListedSupportedCameraMovesAndNoOther) {
    SimulatedCamera bench;
    const auto last = std::make_shared<simulator::CameraModel>();
    CameraOptions foreign;
    foreign.record.vendorId ^= 1;
    const auto other = std::make_shared<simulator::CameraModel>(foreign);
    bench.bus->plug(last, 1, {4});
    bench.bus->plug(other, 2, {1});

    ASSERT_TRUE(setZoomPosition(77));
    EXPECT_EQ(last->target().zoom, 77);
    EXPECT_TRUE(bench.camera->transfers().empty());
    EXPECT_TRUE(other->transfers().empty());
}

struct Failure {
    const char *name;
    std::uint8_t request;
    bool setFails;
    const char *readError;
    const char *writeError;
};

const Failure kFailures[] = {
    {"NoInfo", kGetInfo, true, "invalid control name: ", "invalid control name: "},
    {"NoRead", support::kGetCur, false, "unable to read value of control: ", ""},
    {"NoWrite", support::kSetCur, true, "", "unable to write new value to control "}};

/// What reads and what writes one control.
struct Functions {
    std::string control;
    std::optional<std::string> (*read)();
    bool (*write)();
};

TEST(PtzFunctions, SayWhichControlFailed) {
    for (const Failure &failure : kFailures) {
        SCOPED_TRACE(failure.name);
        CameraOptions options;
        options.refused = {{1, 0x0D, failure.request}, {1, 0x0B, failure.request}};
        SimulatedCamera bench(options);
        for (const Functions &row :
             {Functions{"pan-tilt-abs", getPanTiltPosition, [] { return setPanTiltPosition(1, 2); }},
              Functions{"zoom-abs", getZoomPosition, [] { return setZoomPosition(3); }}}) {
            CaptureStderr();
            const auto read = row.read();
            const std::string readError = GetCapturedStderr();
            CaptureStderr();
            const bool written = row.write();
            const std::string writeError = GetCapturedStderr();

            const auto line = [&](const char *text) {
                return *text ? "ERROR:  " + std::string(text) + row.control + "\n" : "";
            };
            EXPECT_EQ(readError, line(failure.readError)) << row.control;
            EXPECT_EQ(read == "AAAAAAAAA", *failure.readError != '\0') << row.control;
            EXPECT_EQ(writeError, line(failure.writeError)) << row.control;
            EXPECT_EQ(written, !failure.setFails) << row.control;
        }
    }
}

TEST(PtzFunctions, AMissingControlIsNamedEvenForTheDataFunctions) {
    CameraOptions options;
    options.hasZoomAbs = false;
    SimulatedCamera bench(options);
    CaptureStderr();
    EXPECT_EQ(getZoomPosition(), "AAAAAAAAA");
    EXPECT_EQ(getZoomData(), std::nullopt);
    EXPECT_EQ(GetCapturedStderr(),
              "ERROR:  invalid control name: zoom-abs\nERROR:  invalid control name: zoom-abs\n");
}

}  // namespace
