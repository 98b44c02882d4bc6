#include "ptz/camera_motion.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <limits>
#include <map>
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

ptz::PositionDictionary panTilt(std::int64_t pan, std::int64_t tilt) {
    return {{"Pan_Value", pan}, {"Tilt_Value", tilt}};
}

/// The camera whose accepted orders are told when a process ends, beside the way it ends.
const SimulatedCamera *observed = nullptr;

void tellEnd(const char *end) {
    if (observed) std::fprintf(stderr, "%s, %d orders", end, observed->panTiltSets() + observed->zoomSets());
}

/// Writes what it would show to standard error, which a death test can see.
struct SpokenAlerts : platform::Alerts {
    platform::AlertAnswer run(const platform::Alert &alert) override {
        std::fprintf(stderr, "%s|%s", alert.messageText.c_str(), alert.informativeText.c_str());
        for (const std::string &button : alert.buttons) std::fprintf(stderr, "|%s", button.c_str());
        tellEnd("");
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

constexpr char kDialog[] =
    "Error en la comunicación con la cámara|No se detecta la cámara. La aplicación finalizará al pulsar en "
    "aceptar|Aceptar, 0 orders";

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

/// What a motion says in a process of its own, its end included.
std::string heard(const SimulatedCamera &bench, void (*motion)()) {
    testing::internal::CaptureStderr();
    const pid_t child = ::fork();
    if (child == 0) {
        observed = &bench;
        std::signal(SIGABRT, [](int) {
            tellEnd("stopped");
            ::_exit(0);
        });
        motion();
        tellEnd("moved");
        ::_exit(0);
    }
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    return testing::internal::GetCapturedStderr();
}

/// A motion that only orders ends in the dialog; one that first reads ends without it while it reads. Limits
/// that cannot be asked for change nothing.
TEST_F(CameraMotion, EndsAsStatedWhicheverTransferBreaksInWhicheverWay) {
    using enum usb::Outcome;
    struct Row {
        void (*motion)();
        std::string control;
        bool reads;
    };
    int situations = 0;
    for (const auto &[motion, control, reads] :
         {Row{[] { ZEL_SetPanTiltPosition(1, 1); }, "pan-tilt-abs\n", false},
          Row{[] { ptz::moveCameraBy(1, 0); }, "pan-tilt-abs\n", true},
          Row{[] { ZoomMove(1); }, "zoom-abs\n", true}}) {
        const std::map<int, std::string> complaints = {
            {0x86, "ERROR:  invalid control name: " + control},
            {support::kGetCur, "ERROR:  unable to read value of control: " + control},
            {support::kSetCur, "ERROR:  unable to write new value to control " + control}};
        SimulatedCamera whole;
        motion();
        const auto requests = whole.camera->transfers();
        for (std::size_t number = 0; number < requests.size(); ++number) {
            for (const usb::Outcome way : {refused, timedOut, disconnected, denied, busy, failed}) {
                // What is gone stays away: the next one that matters is the one that fails.
                std::size_t failing = number;
                while (way == disconnected && !complaints.contains(requests[failing].setup.request))
                    ++failing;
                const auto complaint = complaints.find(requests[failing].setup.request);
                const bool isReading = reads && failing < requests.size() / 2;
                const SimulatedCamera bench;
                bench.bus->answerRequestWith(bench.camera, number, way);
                EXPECT_EQ(heard(bench, motion),
                          complaint == complaints.end()
                              ? "moved, 1 orders"
                              : complaint->second + (isReading ? "stopped, 0 orders" : kDialog))
                    << control << reads << ", transfer " << number << ", way " << static_cast<int>(way);
                ++situations;
            }
        }
        for (const usb::Outcome way : {disconnected, denied, busy, failed}) {
            const SimulatedCamera shut;
            shut.bus->answerOpenWith(shut.camera, way);
            EXPECT_EQ(heard(shut, motion), complaints.at(0x86) + (reads ? "stopped, 0 orders" : kDialog));
        }
        const SimulatedCamera staysOpen;
        staysOpen.bus->answerCloseWith(staysOpen.camera, failed);
        EXPECT_EQ(heard(staysOpen, motion), "moved, 1 orders");
        CameraOptions foreign;
        foreign.record.productId ^= 1;
        EXPECT_EQ(heard(SimulatedCamera(foreign), motion), kDialog);
    }
    EXPECT_EQ(situations, 6 * (6 + 12 + 12));
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
