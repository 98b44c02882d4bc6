#include "ptz/camera_motion.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <limits>

#include "ptz/ptz_functions.h"
#include "support/answered_alerts.h"
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

PositionDictionary panTilt(std::int64_t pan, std::int64_t tilt) {
    return {{"Pan_Value", pan}, {"Tilt_Value", tilt}};
}

class CameraMotion : public testing::Test {
 protected:
    CameraMotion() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
    ~CameraMotion() override { DemoMode = false; }

    support::AnsweredAlerts alerts_;
};

/// Writes what it would show to standard error, which a death test can see.
struct SpokenAlerts : platform::Alerts {
    platform::AlertAnswer run(const platform::Alert &alert) override {
        std::fprintf(stderr, "%s|%s", alert.messageText.c_str(), alert.informativeText.c_str());
        for (const std::string &button : alert.buttons) std::fprintf(stderr, "|%s", button.c_str());
        return {};
    }
};

void speakAlerts() {
    auto services = platform::services();
    services.alerts = std::make_shared<SpokenAlerts>();
    platform::installServices(services);
}

constexpr char kFailureAlert[] =
    "^Error en la comunicación con la cámara\\|No se detecta la cámara. La aplicación finalizará al pulsar "
    "en "
    "aceptar\\|Aceptar$";
constexpr char kRefusedThenAlert[] = "unable to write new value to control [a-z-]+\nError en la comunicación";

using CameraMotionDeathTest = CameraMotion;

TEST_F(CameraMotion, SetConvertsAndTruncatesTowardZero) {
    SimulatedCamera bench(exactCamera());
    struct Row {
        std::int64_t pan, tilt;
        double rawPan, rawTilt;
    };
    for (const Row &row : {Row{0, 0, 0, 0}, Row{8, 5, 28862, 18598}, Row{-8, -5, -28862, -18598},
                           Row{1, 40, 3607, 148788}, Row{168, -29, 606112, -107871}}) {
        ZEL_SetPanTiltPosition(row.pan, row.tilt);
        EXPECT_EQ(bench.camera->target().pan, row.rawPan) << row.pan;
        EXPECT_EQ(bench.camera->target().tilt, row.rawTilt) << row.tilt;
    }
}

TEST_F(CameraMotion, ReadConvertsBothAxesAlikeAndRoundsHalvesAwayFromZero) {
    SimulatedCamera bench(exactCamera());
    struct Row {
        std::int32_t rawPan, rawTilt;
        PositionDictionary display;
    };
    for (const Row &row :
         {Row{0, 0, panTilt(0, 0)}, Row{3604, 1802, panTilt(1, 0)}, Row{-1806, -1802, panTilt(-1, 0)},
          Row{28862, 18598, panTilt(8, 5)}, Row{-28862, 148788, panTilt(-8, 41)}}) {
        ASSERT_TRUE(setPanTiltPosition(row.rawPan, row.rawTilt));
        EXPECT_EQ(ZEL_GetPanTiltPosition(), row.display) << row.rawPan << "," << row.rawTilt;
    }
}

TEST_F(CameraMotion, ZoomStepsStopAtZeroAndAreLimitedByTheCameraAbove) {
    SimulatedCamera bench;
    ASSERT_TRUE(setZoomPosition(30));
    ZoomMove(-AvanceRapidoZoom);
    EXPECT_EQ(bench.camera->target().zoom, 0);
    ZoomMove(10);
    EXPECT_EQ(ZEL_GetZoomPosition(), (PositionDictionary{{"Zoom_Value", 10}}));
    ASSERT_TRUE(setZoomPosition(990));
    ZoomMove(AvanceRapidoZoom);
    EXPECT_EQ(bench.camera->target().zoom, 1000);
}

TEST_F(CameraMotion, DemoModeLeavesTheCameraAlone) {
    SimulatedCamera bench;
    DemoMode = true;
    EXPECT_EQ(ZEL_GetPanTiltPosition(), panTilt(0, 0));
    EXPECT_EQ(ZEL_GetZoomPosition(), (PositionDictionary{{"Zoom_Value", 0}}));
    ZEL_SetPanTiltPosition(std::numeric_limits<std::int64_t>::max(), 1);
    moveCameraBy(8, 5);
    ZoomMove(40);
    EXPECT_TRUE(bench.camera->transfers().empty());
}

TEST_F(CameraMotionDeathTest, ACameraThatDoesNotAnswerEndsTheProgramWithTheDialog) {
    const auto unplugged = [](void (*act)()) {
        speakAlerts();
        SimulatedCamera bench;
        bench.bus->unplug(bench.camera);
        act();
    };
    const auto refusing = [](std::uint8_t selector, void (*act)()) {
        speakAlerts();
        SimulatedCamera bench(cameraRefusing(selector, support::kSetCur));
        act();
    };
    EXPECT_EXIT(unplugged([] { (void)ZEL_GetPanTiltPosition(); }), ExitedWithCode(0), kFailureAlert);
    EXPECT_EXIT(unplugged([] { (void)ZEL_GetZoomPosition(); }), ExitedWithCode(0), kFailureAlert);
    EXPECT_EXIT(unplugged([] { ZEL_SetPanTiltPosition(1, 1); }), ExitedWithCode(0), kFailureAlert);
    EXPECT_EXIT(refusing(support::kPanTiltAbs, [] { moveCameraBy(1, 0); }), ExitedWithCode(0),
                kRefusedThenAlert);
    EXPECT_EXIT(refusing(support::kZoomAbs, [] { ZoomMove(1); }), ExitedWithCode(0), kRefusedThenAlert);
}

TEST_F(CameraMotionDeathTest, APositionThatCannotBeReadIsAFatalStopWithoutTheDialog) {
    const auto unreadable = [](std::uint8_t selector, void (*act)()) {
        speakAlerts();
        SimulatedCamera bench(cameraRefusing(selector, support::kGetCur));
        act();
    };
    EXPECT_EXIT(unreadable(support::kPanTiltAbs, [] { (void)ZEL_GetPanTiltPosition(); }),
                KilledBySignal(SIGABRT), "^ERROR:  unable to read value of control: [a-z-]+\n$");
    EXPECT_EXIT(unreadable(support::kZoomAbs, [] { (void)ZEL_GetZoomPosition(); }), KilledBySignal(SIGABRT),
                "^ERROR:  unable to read value of control: [a-z-]+\n$");
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
