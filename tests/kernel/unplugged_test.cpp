#include "kernel/each_backend.h"

namespace guest {
namespace {

/// Two requests of two seconds each, and two seconds more for the emulated machine.
constexpr auto kSoon = seconds(6);

class Unplugged : public EachBackend {};
INSTANTIATE_TEST_SUITE_P(By, Unplugged, kBothBackends, backendName);

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
