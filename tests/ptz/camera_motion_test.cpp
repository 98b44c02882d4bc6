#include "ptz/camera_motion.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <limits>
#include <string>

#include "platform/services.h"
#include "ptz/ptz_functions.h"
#include "support/printed.h"
#include "support/simulated_camera.h"

namespace {

using simulator::CameraOptions;
using support::SimulatedCamera;
using testing::ExitedWithCode;
using testing::KilledBySignal;

/// A camera that reports neither range nor step, so that every position goes to it to the unit.
CameraOptions exactCamera() {
    CameraOptions options;
    options.refused = {{1, 0x0D, 0x82}, {1, 0x0D, 0x84}, {1, 0x0B, 0x82}};
    return options;
}

CameraOptions cameraRefusing(std::uint8_t selector, std::uint8_t request) {
    CameraOptions options = exactCamera();
    options.refused.insert({1, selector, request});
    return options;
}

ptz::PositionDictionary panTilt(std::int64_t pan, std::int64_t tilt) {
    return {{"Pan_Value", pan}, {"Tilt_Value", tilt}};
}

/// Writes what it would show to standard error, which a death test can see.
struct SpokenAlerts : platform::Alerts {
    platform::AlertAnswer run(const platform::Alert &alert) override {
        std::fprintf(stderr, "%s|%s", alert.messageText.c_str(), alert.informativeText.c_str());
        for (const std::string &button : alert.buttons) std::fprintf(stderr, "|%s", button.c_str());
        return {};
    }
};

class CameraMotion : public testing::Test {
 protected:
    CameraMotion() {
        auto services = platform::services();
        services.alerts = std::make_shared<SpokenAlerts>();
        platform::installServices(services);
    }
    ~CameraMotion() override { DemoMode = false; }
};

constexpr char kFailureAlert[] =
    "Error en la comunicación con la cámara\\|No se detecta la cámara. La aplicación finalizará al pulsar en "
    "aceptar\\|Aceptar$";

using CameraMotionDeathTest = CameraMotion;

TEST_F(CameraMotion, SettingTruncatesTowardZeroAndReadingRoundsAndTakesTiltForPan) {
    SimulatedCamera bench(exactCamera());
    struct Row {
        std::int64_t pan, tilt;
        double rawPan, rawTilt;
        std::int64_t readTilt;
    };
    for (const Row &row : {Row{0, 0, 0, 0, 0}, Row{8, 5, 28862, 18598, 5}, Row{-8, -5, -28862, -18598, -5},
                           Row{1, 40, 3607, 148788, 41}, Row{168, -29, 606112, -107871, -30}}) {
        ZEL_SetPanTiltPosition(row.pan, row.tilt);
        EXPECT_EQ(bench.camera->target().pan, row.rawPan);
        EXPECT_EQ(bench.camera->target().tilt, row.rawTilt);
        EXPECT_EQ(ZEL_GetPanTiltPosition(), panTilt(row.pan, row.readTilt));
    }
    ASSERT_TRUE(setPanTiltPosition(-1806, 1802));  // just beyond and just below half a unit
    EXPECT_EQ(ZEL_GetPanTiltPosition(), panTilt(-1, 0));
}

TEST_F(CameraMotion, ZoomStepsStopAtZeroAndAreLimitedByTheCameraAbove) {
    SimulatedCamera bench;
    ASSERT_TRUE(setZoomPosition(30));
    ZoomMove(-AvanceRapidoZoom);
    EXPECT_EQ(bench.camera->target().zoom, 0);
    ZoomMove(10);
    EXPECT_EQ(ZEL_GetZoomPosition(), (ptz::PositionDictionary{{"Zoom_Value", 10}}));
    ASSERT_TRUE(setZoomPosition(990));
    ZoomMove(AvanceRapidoZoom);
    EXPECT_EQ(bench.camera->target().zoom, 1000);
}

TEST_F(CameraMotion, DemoModeLeavesTheCameraAlone) {
    SimulatedCamera bench;
    DemoMode = true;
    EXPECT_EQ(ZEL_GetPanTiltPosition(), panTilt(0, 0));
    EXPECT_EQ(ZEL_GetZoomPosition(), (ptz::PositionDictionary{{"Zoom_Value", 0}}));
    ZEL_SetPanTiltPosition(std::numeric_limits<std::int64_t>::max(), 1);
    ptz::moveCameraBy(8, 5);
    ZoomMove(40);
    EXPECT_TRUE(bench.camera->transfers().empty());
}

TEST_F(CameraMotionDeathTest, ACameraThatFailsEndsTheProgramByTheDialogOrIfUnreadableWithoutIt) {
    const auto act = [](const CameraOptions &options, void (*move)()) {
        SimulatedCamera bench(options);
        move();
    };
    CameraOptions foreign;
    foreign.record.productId ^= 1;
    EXPECT_EXIT(act(foreign, [] { (void)ZEL_GetPanTiltPosition(); }), ExitedWithCode(0), kFailureAlert);
    EXPECT_EXIT(act(foreign, [] { (void)ZEL_GetZoomPosition(); }), ExitedWithCode(0), kFailureAlert);
    EXPECT_EXIT(act(foreign, [] { ZEL_SetPanTiltPosition(1, 1); }), ExitedWithCode(0), kFailureAlert);

    std::string refused = "unable to write new value to control [a-z-]+\n";
    refused += kFailureAlert;
    EXPECT_EXIT(act(cameraRefusing(support::kPanTiltAbs, support::kSetCur), [] { ptz::moveCameraBy(1, 0); }),
                ExitedWithCode(0), refused);
    EXPECT_EXIT(act(cameraRefusing(support::kZoomAbs, support::kSetCur), [] { ZoomMove(1); }),
                ExitedWithCode(0), refused);

    const std::string unreadable =
        "^ERROR:  unable to read value of control: [a-z-]+\n" + support::kSilentEnd;
    EXPECT_EXIT(
        act(cameraRefusing(support::kPanTiltAbs, support::kGetCur), [] { (void)ZEL_GetPanTiltPosition(); }),
        KilledBySignal(SIGABRT), unreadable);
    EXPECT_EXIT(act(cameraRefusing(support::kZoomAbs, support::kGetCur), [] { ZoomMove(1); }),
                KilledBySignal(SIGABRT), unreadable);
}

TEST_F(CameraMotionDeathTest, NumbersBeyondTheCamerasRangeAreFatalAndThoseJustWithinAreSent) {
    const auto set = [](std::int64_t pan, std::int64_t tilt) {
        SimulatedCamera bench(exactCamera());
        ZEL_SetPanTiltPosition(pan, tilt);
    };
    const auto zoom = [](std::int64_t step) {
        SimulatedCamera bench(exactCamera());
        ASSERT_TRUE(setZoomPosition(5));
        ZoomMove(step);
    };
    // The camera itself refuses what is within 32 bits and beyond its motors: that is the dialog's case.
    EXPECT_EXIT(set(595231, 0), ExitedWithCode(0), "unable to write");
    EXPECT_EXIT(set(595232, 0), KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(set(0, -577324), ExitedWithCode(0), "unable to write");
    EXPECT_EXIT(set(0, -577325), KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zoom(2147483642), ExitedWithCode(0), "unable to write");
    EXPECT_EXIT(zoom(2147483643), KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(zoom(std::numeric_limits<std::int64_t>::max()), KilledBySignal(SIGABRT), "");
}

}  // namespace
