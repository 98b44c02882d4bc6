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

constexpr char kNo[] = "AAAAAAAAA";
constexpr char kPanTiltRange[] = "-612000,12000,3600,0,-108000,324000,3600,0";
constexpr char kZoomRange[] = "0,1000,1,0";
const Answers kHealthy{true, true, "36000,-18000", "300", kPanTiltRange, kZoomRange};

const FaultCase kFaults[] = {
    {"get-info", Way::uvcvideo, kHealthy},  {"get-info", Way::libusb, kHealthy},
    {"get-min", Way::uvcvideo, kHealthy},   {"get-min", Way::libusb, kHealthy},
    {"get-max", Way::uvcvideo, kHealthy},   {"get-max", Way::libusb, kHealthy},
    {"get-res", Way::uvcvideo, kHealthy},   {"get-res", Way::libusb, kHealthy},
    {"get-def", Way::uvcvideo, kHealthy},   {"get-def", Way::libusb, kHealthy},
    {"get-cur", Way::uvcvideo, kHealthy},   {"get-cur", Way::libusb, kHealthy},
    {"set-cur", Way::uvcvideo, kHealthy},   {"set-cur", Way::libusb, kHealthy},
    {"slow", Way::uvcvideo, kHealthy},      {"slow", Way::libusb, kHealthy},
    {"short", Way::uvcvideo, kHealthy},     {"short", Way::libusb, kHealthy},
    {"outside", Way::uvcvideo, kHealthy},   {"outside", Way::libusb, kHealthy},
    {"res-0", Way::uvcvideo, kHealthy},     {"res-0", Way::libusb, kHealthy},
    {"ids", Way::uvcvideo, kHealthy},       {"ids", Way::libusb, kHealthy},
    {"interface", Way::uvcvideo, kHealthy}, {"interface", Way::libusb, kHealthy},
    {"no-header", Way::uvcvideo, kHealthy}, {"no-header", Way::libusb, kHealthy},
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
    for (const LoggedTransfer &move : camera.transfers("SET_CUR", kPanTilt))
        EXPECT_EQ(move.data, "a08c0000b0b9ffff");
}

}  // namespace
}  // namespace guest
