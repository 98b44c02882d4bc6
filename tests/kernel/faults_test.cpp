#include <algorithm>
#include <map>
#include <optional>

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

struct FaultCase {
    const char *fault;
    Way way;
    Answers expected;
};

void PrintTo(const FaultCase &faultCase, std::ostream *out) {
    *out << faultCase.fault;
}

std::string faultName(const ::testing::TestParamInfo<FaultCase> &info) {
    std::string name = info.param.fault;
    std::ranges::replace(name, '-', '_');
    return name + (info.param.way == Way::uvcvideo ? "_uvcvideo" : "_libusb");
}

constexpr char kPanTiltRange[] = "-612000,12000,3600,0,-108000,324000,3600,0";
constexpr char kZoomRange[] = "0,1000,1,0";
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
const Answers kAlwaysOutside{true, true, kOutside, "1010", kPanTiltRange, kZoomRange};

/// By libusb, what the camera leaves out is left out and all else works. The driver is stricter in one way
/// and blinder in another: a control that does not tell its whole range does not exist for it, and it fills a
/// short answer up with zeros, so that half the range of such a camera cannot be told from a real one.
const FaultCase kFaults[] = {
    // Each control has the flags that the driver believes it has.
    {"get-info", Way::uvcvideo, kHealthy},
    {"get-info", Way::libusb, kNoControls},
    {"get-min", Way::uvcvideo, kNoControls},
    {"get-min", Way::libusb, kNoRange},
    {"get-max", Way::uvcvideo, kNoControls},
    {"get-max", Way::libusb, kNoRange},
    {"get-res", Way::uvcvideo, kNoControls},
    {"get-res", Way::libusb, kNoStep},
    {"get-def", Way::uvcvideo, kNoControls},
    {"get-def", Way::libusb, kNoDefault},
    // The driver knows pan and tilt as halves of one setting, and reads that before it writes; the zoom is
    // whole.
    {"get-cur",
     Way::uvcvideo,
     {false, true, kUnreadablePosition, kUnreadablePosition, kPanTiltRange, kZoomRange}},
    {"get-cur",
     Way::libusb,
     {true, true, kUnreadablePosition, kUnreadablePosition, kPanTiltRange, kZoomRange}},
    {"set-cur", Way::uvcvideo, kSetRefused},
    {"set-cur", Way::libusb, kSetRefused},
    {"slow", Way::uvcvideo, kHealthy},
    {"slow", Way::libusb, kHealthy},
    {"short", Way::uvcvideo, {true, true, "36000,0", "232", "-612000,12000,3600,0,0,0,0,0", "0,232,1,0"}},
    {"short", Way::libusb, {true, true, kUnreadablePosition, kUnreadablePosition, ",,,,,,,", ",,,"}},
    {"outside", Way::uvcvideo, kAlwaysOutside},
    {"outside", Way::libusb, kAlwaysOutside},
    {"res-0", Way::uvcvideo, kStepZero},
    {"res-0", Way::libusb, kStepZero},
    // Requests name terminal 1 and unit 2; the driver puts the camera's own numbers in their place.
    {"ids", Way::uvcvideo, kHealthy},
    {"ids", Way::libusb, kNoControls},
    {"interface", Way::uvcvideo, kHealthy},
    {"interface", Way::libusb, kHealthy},
    {"no-header", Way::uvcvideo, kNoCamera},
    {"no-header", Way::libusb, kNoCamera},
};

class Fault : public ::testing::TestWithParam<FaultCase> {};
INSTANTIATE_TEST_SUITE_P(Of, Fault, ::testing::ValuesIn(kFaults), faultName);

TEST_P(Fault, EndsInAnAnswerWithinItsTime) {
    choose(GetParam().way);
    VirtualCamera camera({"--fault", GetParam().fault});
    camera.plugIn();
    camera.forget();

    Answers answers;
    // Six requests at most, each of which may take its two seconds; five functions ask no more than that
    // either.
    const seconds longest(14);
    EXPECT_LT(timeOf([&] { answers.setPanTilt = setPanTiltPosition(36000, -18000); }), longest);
    EXPECT_LT(timeOf([&] { answers.setZoom = setZoomPosition(300); }), longest);
    EXPECT_LT(timeOf([&] { answers.panTilt = getPanTiltPosition(); }), longest);
    EXPECT_LT(timeOf([&] { answers.zoom = getZoomPosition(); }), longest);
    EXPECT_LT(timeOf([&] { answers.panTiltData = getPanTiltData(); }), longest);
    EXPECT_LT(timeOf([&] { answers.zoomData = getZoomData(); }), longest);
    camera.show(GetParam().fault);

    EXPECT_EQ(answers, GetParam().expected);
    // What a call answered about a move must be true of the camera, and no call may try twice.
    const auto moves = camera.transfers("SET_CUR", kPanTilt);
    const auto done = std::ranges::count(moves, "ok", &LoggedTransfer::outcome);
    EXPECT_EQ(done, answers.setPanTilt ? 1 : 0);
    EXPECT_LE(moves.size(), 1u);
}

}  // namespace
}  // namespace guest
