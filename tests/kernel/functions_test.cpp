#include "kernel/each_backend.h"

namespace guest {
namespace {

class PtzFunctions : public EachBackend {};
INSTANTIATE_TEST_SUITE_P(By, PtzFunctions, kBothBackends, backendName);

TEST_P(PtzFunctions, BeyondTheRangeGoesToItsLimitAndBetweenStepsIsRounded) {
    VirtualCamera camera;
    camera.plugIn();

    EXPECT_TRUE(setPanTiltPosition(2000000, -2000000));
    EXPECT_EQ(getPanTiltPosition(), "612000,-108000");
    EXPECT_TRUE(setPanTiltPosition(5500, 5300));
    EXPECT_EQ(getPanTiltPosition(), "7200,3600");
    EXPECT_TRUE(setZoomPosition(70000));
    EXPECT_EQ(getZoomPosition(), "1000");
}

TEST_P(PtzFunctions, OfTwoEqualCamerasTheLastListedMoves) {
    VirtualCamera cameras({"--cameras", "2"});
    // The order of the ports counts, not that of the server's names.
    cameras.plugIn("1-2");
    cameras.plugIn("1-1");
    cameras.forget();

    EXPECT_TRUE(setPanTiltPosition(72000, 36000));
    EXPECT_TRUE(setZoomPosition(77));
    EXPECT_EQ(getZoomPosition(), "77");

    EXPECT_EQ(backendTaken(cameras), GetParam());
    ASSERT_EQ(cameras.transfers("SET_CUR", kPanTilt).size(), 1u);
    for (const LoggedTransfer &transfer : cameras.transfers()) EXPECT_EQ(transfer.camera, "1-1");
}

TEST(DriverComesAndGoes, TheNextCallTakesTheOtherBackend) {
    loadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const std::string name = camerasOnBus().at(0);

    for (std::int32_t round = 1; round <= 2; ++round) {
        camera.forget();
        EXPECT_TRUE(setPanTiltPosition(3600 * round, 0));
        EXPECT_EQ(backendTaken(camera), Backend::uvcvideo);

        unbindDriver(name);
        camera.forget();
        EXPECT_TRUE(setPanTiltPosition(7200 * round, 0));
        EXPECT_EQ(backendTaken(camera), Backend::libusb);
        EXPECT_EQ(getPanTiltPosition(), std::to_string(7200 * round) + ",0");

        // Fails unless libusb has let go of the interface.
        bindDriver(name);
    }
    EXPECT_EQ(camera.count("detach"), 0);
}

}  // namespace
}  // namespace guest
