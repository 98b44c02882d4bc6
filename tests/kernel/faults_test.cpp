#include <algorithm>
#include <optional>
#include <tuple>

#include "kernel/each_way.h"

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

/// What a fault makes of the answers by each backend.
struct FaultRow {
    const char *fault;
    Answers uvcvideo;
    Answers libusb;
    /// That a call may take: six requests, each of which may take its two seconds.
    seconds longest{14};
};

void PrintTo(const FaultRow &row, std::ostream *out) {
    *out << row.fault;
}

constexpr char kPanTiltRange[] = "-612000,12000,3600,0,-108000,324000,3600,0";
constexpr char kZoomRange[] = "0,1000,1,0";
/// The first character of the largest pan is always lost, here its sign.
constexpr char kReversedRange[] = "612000,612000,3600,0,324000,-108000,3600,0";
constexpr char kOutside[] = "648000,360000";

const Answers kHealthy{true, true, "36000,-18000", "300", kPanTiltRange, kZoomRange};
/// The camera is there, its controls are not.
const Answers kNoControls{false, false, kUnreadablePosition, kUnreadablePosition, {}, {}};
const Answers kNoCamera{false, false, {}, {}, {}, {}};
const Answers kSetRefused{false, false, "0,0", "0", kPanTiltRange, kZoomRange};
const Answers kNoRange{true, true, "36000,-18000", "300", ",,3600,0,,,3600,0", ",,1,0"};
const Answers kNoStep{true, true, "36000,-18000", "300", "-612000,12000,,0,-108000,324000,,0", "0,1000,,0"};
const Answers kNoDefault{true,       true, "36000,-18000", "300", "-612000,12000,3600,,-108000,324000,3600,",
                         "0,1000,1,"};
const Answers kStepZero{true,        true, "36000,-18000", "300", "-612000,12000,0,0,-108000,324000,0,0",
                        "0,1000,0,0"};
const Answers kNoZoom{true, false, "36000,-18000", kUnreadablePosition, kPanTiltRange, {}};
const Answers kAlwaysOutside{true, true, kOutside, "1010", kPanTiltRange, kZoomRange};

/// By libusb, what the camera leaves out is left out and all else works. The driver is stricter in one way
/// and blinder in another: a control that does not tell its whole range does not exist for it, and it fills a
/// short answer up with zeros, so that half the range of such a camera cannot be told from a real one.
const FaultRow kFaults[] = {
    // Each control has the flags that the driver believes it has.
    {"get-info", kHealthy, kNoControls},
    {"get-min", kNoControls, kNoRange},
    {"get-max", kNoControls, kNoRange},
    {"get-res", kNoControls, kNoStep},
    {"get-def", kNoControls, kNoDefault},
    // The driver knows pan and tilt as halves of one setting, and reads that before it writes; the zoom is
    // whole.
    {"get-cur",
     {false, true, kUnreadablePosition, kUnreadablePosition, kPanTiltRange, kZoomRange},
     {true, true, kUnreadablePosition, kUnreadablePosition, kPanTiltRange, kZoomRange}},
    {"set-cur", kSetRefused, kSetRefused},
    {"not-ready", kSetRefused, kSetRefused},
    {"slow", kHealthy, kHealthy},
    // The driver remembers the range of pan and tilt from before the order that the camera hung on.
    {"hang",
     {false, false, kUnreadablePosition, kUnreadablePosition, kPanTiltRange, {}},
     kNoControls,
     seconds(8)},
    {"short",
     {true, true, "36000,0", "232", "-612000,12000,3600,0,0,0,0,0", "0,232,1,0"},
     {true, true, kUnreadablePosition, kUnreadablePosition, ",,,,,,,", ",,,"}},
    {"outside", kAlwaysOutside, kAlwaysOutside},
    {"res-0", kStepZero, kStepZero},
    // Whoever clamps last decides which end it is.
    {"reversed",
     {true, true, "612000,324000", "0", kReversedRange, "1000,0,1,0"},
     {true, true, "-612000,-108000", "0", kReversedRange, "1000,0,1,0"}},
    {"no-zoom", kNoZoom, kNoZoom},
    // Requests name terminal 1 and unit 2; the driver puts the camera's own numbers in their place.
    {"ids", kHealthy, kNoControls},
    // The zoom's requests reach the control that has the zoom's number in the other unit.
    {"swapped-ids", kHealthy, {false, false, kUnreadablePosition, kUnreadablePosition, {}, ",,,"}},
    {"interface", kHealthy, kHealthy},
    {"no-header", kNoCamera, kNoCamera},
};

class Fault : public ::testing::TestWithParam<std::tuple<FaultRow, Way>> {};

std::string faultName(const ::testing::TestParamInfo<Fault::ParamType> &info) {
    const auto &[row, way] = info.param;
    std::string name = row.fault;
    std::ranges::replace(name, '-', '_');
    return name + (way == Way::uvcvideo ? "_uvcvideo" : "_libusb");
}
INSTANTIATE_TEST_SUITE_P(Of, Fault, ::testing::Combine(::testing::ValuesIn(kFaults), kBothWays), faultName);

TEST_P(Fault, EndsInAnAnswerWithinItsTime) {
    const auto &[row, way] = GetParam();
    choose(way);
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
    camera.show(row.fault);

    EXPECT_EQ(answers, way == Way::uvcvideo ? row.uvcvideo : row.libusb);
    // What a call answered about a move must be true of the camera, and no call may try twice: except through
    // the driver, where the camera itself asks for patience.
    const auto moves = camera.transfers("SET_CUR", kPanTilt);
    const auto done = std::ranges::count(moves, "ok", &LoggedTransfer::outcome);
    EXPECT_EQ(done, answers.setPanTilt ? 1 : 0);
    const bool isPatient = row.fault == std::string("not-ready") && way == Way::uvcvideo;
    EXPECT_EQ(moves.size() > 1, isPatient) << moves.size();
}

}  // namespace
}  // namespace guest
