#include <tuple>

#include "kernel/each_way.h"
#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_control.h"
#include "uvc/uvc_controller.h"

namespace guest {
namespace {

/// Two requests of two seconds each, and two seconds more for the emulated machine.
constexpr auto kSoon = seconds(6);

class Unplugged : public EachWay {};
INSTANTIATE_TEST_SUITE_P(By, Unplugged, kBothWays, wayName);

TEST_P(Unplugged, BetweenEnumerationAndSet) {
    VirtualCamera camera;
    camera.plugIn();
    const auto controllers = UVCController::uvcControllers();
    ASSERT_TRUE(controllers);
    const auto control = controllers->back()->controlWithName(UVCTerminalControlPanTiltAbsolute);
    ASSERT_TRUE(control);
    ASSERT_TRUE(control->setCurrentValueFromCString("{3600,3600}", 0));

    camera.pullOut();
    bool written = true;
    EXPECT_LT(timeOf([&] { written = control->writeFromCurrentValue(); }), kSoon);
    EXPECT_FALSE(written);
    EXPECT_FALSE(control->readIntoCurrentValue());
    EXPECT_FALSE(setPanTiltPosition(3600, 3600));
    EXPECT_EQ(getPanTiltData(), std::nullopt);

    camera.plugIn();
    camera.forget();
    // A control found before the cable came out is useless now, but does no harm.
    std::ignore = control->writeFromCurrentValue();
    EXPECT_TRUE(setPanTiltPosition(72000, -3600));
    EXPECT_EQ(getPanTiltPosition(), "72000,-3600");
}

TEST_P(Unplugged, DuringARequest) {
    VirtualCamera camera({"--fault", "slow"});
    camera.plugIn();

    Background cable({"bash", "-c", "sleep 1.5; kill -USR1 " + camera.processId()}, "cable.txt");
    bool moved = true;
    EXPECT_LT(timeOf([&] { moved = setPanTiltPosition(3600, 3600); }), kSoon);
    EXPECT_FALSE(moved);
}

TEST_P(Unplugged, WithoutAWord) {
    VirtualCamera camera;
    camera.plugIn();
    camera.die();

    // The kernel may need a moment to learn that nobody answers any more.
    requireSoon(
        "a refusal", [] { return !setPanTiltPosition(3600, 3600); }, kSoon);
    VirtualCamera::waitUntilGone();
    EXPECT_FALSE(setZoomPosition(1));
}

}  // namespace
}  // namespace guest
