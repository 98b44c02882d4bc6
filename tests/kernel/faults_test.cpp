#include <algorithm>
#include <cstdio>
#include <optional>
#include <tuple>

#include "kernel/each_backend.h"
#include "platform/services.h"
#include "ptz/camera_motion.h"

namespace guest {
namespace {

/// What the six functions answer on a camera with one fault.
struct Answers {
    bool setPanTilt = false;
    bool setZoom = false;
    std::optional<std::string> panTilt;
    std::optional<std::string> zoom;
    std::optional<std::string> panTiltData;
    std::optional<std::string> zoomData;

    bool operator==(const Answers &) const = default;
};

void PrintTo(const Answers &answers, std::ostream *out) {
    const auto text = [](const std::optional<std::string> &value) {
        return value ? "\"" + *value + "\"" : "nothing";
    };
    *out << "{" << answers.setPanTilt << ", " << answers.setZoom << ", " << text(answers.panTilt) << ", "
         << text(answers.zoom) << ", " << text(answers.panTiltData) << ", " << text(answers.zoomData) << "}";
}

/// The answers through each backend on a camera with this fault.
struct FaultRow {
    const char *fault;
    Answers uvcvideo;
    Answers libusb;
    /// The longest that a call may take: six requests of two seconds each.
    seconds longest{14};
};

void PrintTo(const FaultRow &row, std::ostream *out) {
    *out << row.fault;
}

constexpr char kPanTiltRange[] = "-612000,12000,3600,0,-108000,324000,3600,0";
constexpr char kZoomRange[] = "0,1000,1,0";
/// The first character of the maximum pan is always lost: here its sign.
constexpr char kReversedRange[] = "612000,612000,3600,0,324000,-108000,3600,0";
constexpr char kOutside[] = "648000,360000";

const Answers kHealthy{true, true, "36000,-18000", "300", kPanTiltRange, kZoomRange};
/// The camera is there, its controls are not.
const Answers kNoControls{false, false, ptz::kUnreadablePosition, ptz::kUnreadablePosition, {}, {}};
const Answers kNoCamera{false, false, {}, {}, {}, {}};
const Answers kSetRefused{false, false, "0,0", "0", kPanTiltRange, kZoomRange};
const Answers kNoRange{true, true, "36000,-18000", "300", ",,3600,0,,,3600,0", ",,1,0"};
const Answers kNoStep{true, true, "36000,-18000", "300", "-612000,12000,,0,-108000,324000,,0", "0,1000,,0"};
const Answers kNoDefault{true,       true, "36000,-18000", "300", "-612000,12000,3600,,-108000,324000,3600,",
                         "0,1000,1,"};
const Answers kStepZero{true,        true, "36000,-18000", "300", "-612000,12000,0,0,-108000,324000,0,0",
                        "0,1000,0,0"};
const Answers kNoZoom{true, false, "36000,-18000", ptz::kUnreadablePosition, kPanTiltRange, {}};
const Answers kAlwaysOutside{true, true, kOutside, "1010", kPanTiltRange, kZoomRange};

/// Through libusb, only what the camera does not answer is missing. The driver is stricter about ranges: a
/// control without a whole range does not exist for it. And it fills short answers up with zeros, so that a
/// range cut in half looks like a real one.
const FaultRow kFaults[] = {
    // The driver falls back on the flags that it takes for usual.
    {"get-info", kHealthy, kNoControls},
    {"get-min", kNoControls, kNoRange},
    {"get-max", kNoControls, kNoRange},
    {"get-res", kNoControls, kNoStep},
    {"get-def", kNoControls, kNoDefault},
    // Pan and tilt are halves of one control, which the driver reads before it writes. The zoom is whole.
    {"get-cur",
     {false, true, ptz::kUnreadablePosition, ptz::kUnreadablePosition, kPanTiltRange, kZoomRange},
     {true, true, ptz::kUnreadablePosition, ptz::kUnreadablePosition, kPanTiltRange, kZoomRange}},
    {"set-cur", kSetRefused, kSetRefused},
    {"not-ready", kSetRefused, kSetRefused},
    {"slow", kHealthy, kHealthy},
    // The driver has read the range of pan and tilt before the order at which the camera hangs.
    {"hang",
     {false, false, ptz::kUnreadablePosition, ptz::kUnreadablePosition, kPanTiltRange, {}},
     kNoControls,
     seconds(8)},
    {"short",
     {true, true, "36000,0", "232", "-612000,12000,3600,0,0,0,0,0", "0,232,1,0"},
     {true, true, ptz::kUnreadablePosition, ptz::kUnreadablePosition, ",,,,,,,", ",,,"}},
    {"outside", kAlwaysOutside, kAlwaysOutside},
    {"res-0", kStepZero, kStepZero},
    // Which end it is depends on who clamps last.
    {"reversed",
     {true, true, "612000,324000", "0", kReversedRange, "1000,0,1,0"},
     {true, true, "-612000,-108000", "0", kReversedRange, "1000,0,1,0"}},
    {"no-zoom", kNoZoom, kNoZoom},
    // Requests name terminal 1 and unit 2; the driver replaces them by the camera's own ids.
    {"ids", kHealthy, kNoControls},
    // The zoom's requests reach the control with the zoom's selector in the other unit.
    {"swapped-ids", kHealthy, {false, false, ptz::kUnreadablePosition, ptz::kUnreadablePosition, {}, ",,,"}},
    {"interface", kHealthy, kHealthy},
    {"misplaced", kHealthy, kHealthy},
    {"gone", kNoCamera, kNoCamera},
    {"no-header", kNoCamera, kNoCamera},
};

class Fault : public ::testing::TestWithParam<std::tuple<FaultRow, Backend>> {};

std::string faultName(const ::testing::TestParamInfo<Fault::ParamType> &info) {
    const auto &[row, backend] = info.param;
    std::string name = row.fault;
    std::ranges::replace(name, '-', '_');
    return name + (backend == Backend::uvcvideo ? "_uvcvideo" : "_libusb");
}
INSTANTIATE_TEST_SUITE_P(Of, Fault, ::testing::Combine(::testing::ValuesIn(kFaults), kBothBackends),
                         faultName);

TEST_P(Fault, EndsInAnAnswerWithinItsTime) {
    const auto &[row, backend] = GetParam();
    choose(backend);
    VirtualCamera camera({"--fault", row.fault});
    camera.plugIn();
    camera.forget();

    Answers answers;
    EXPECT_LT(timeOf([&] { answers.setPanTilt = setPanTiltPosition(36000, -18000); }), row.longest);
    EXPECT_LT(timeOf([&] { answers.setZoom = setZoomPosition(300); }), row.longest);
    EXPECT_LT(timeOf([&] { answers.panTilt = getPanTiltPosition(); }), row.longest);
    EXPECT_LT(timeOf([&] { answers.zoom = getZoomPosition(); }), row.longest);
    EXPECT_LT(timeOf([&] { answers.panTiltData = getPanTiltData(); }), row.longest);
    EXPECT_LT(timeOf([&] { answers.zoomData = getZoomData(); }), row.longest);

    EXPECT_EQ(answers, backend == Backend::uvcvideo ? row.uvcvideo : row.libusb);
    // A call that says "moved" has moved the camera. No order is sent twice, except through the driver to a
    // camera that says that it is not ready yet.
    const auto moves = camera.transfers("SET_CUR", kPanTilt);
    const auto done = std::ranges::count(moves, "ok", &LoggedTransfer::outcome);
    EXPECT_EQ(done, answers.setPanTilt ? 1 : 0);
    const bool isPatient = row.fault == std::string("not-ready") && backend == Backend::uvcvideo;
    EXPECT_EQ(moves.size() > 1, isPatient) << moves.size();
}

/// Prints the dialog's text, where a death test sees it.
struct PrintedAlerts : platform::Alerts {
    platform::AlertAnswer run(const platform::Alert &alert) override {
        std::fputs(alert.messageText.c_str(), stderr);
        return {};
    }
};

class MotionDeathTest : public EachBackend {};
INSTANTIATE_TEST_SUITE_P(By, MotionDeathTest, kBothBackends, backendName);

TEST_P(MotionDeathTest, OfACameraThatGoesAtTheOrderEndsInTheDialog) {
    platform::Services services;
    services.alerts = std::make_shared<PrintedAlerts>();
    platform::installServices(services);
    VirtualCamera camera({"--fault", "gone"});
    for (void (*const motion)() :
         {+[] { ZEL_SetPanTiltPosition(20, -4); }, +[] { ptz::moveCameraBy(8, 0); }}) {
        camera.plugIn();
        camera.forget();
        EXPECT_EXIT(motion(), testing::ExitedWithCode(0),
                    "^ERROR:  unable to write new value to control pan-tilt-abs\nError en la comunicación "
                    "con la cámara$");
        EXPECT_EQ(camera.count("unplug"), 1) << "no order has come";
        EXPECT_EQ(backendTaken(camera), GetParam());
        VirtualCamera::waitUntilGone();
    }
}

}  // namespace
}  // namespace guest
