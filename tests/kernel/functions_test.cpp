#include "kernel/each_way.h"

namespace guest {
namespace {

class PtzFunctions : public EachWay {};
INSTANTIATE_TEST_SUITE_P(By, PtzFunctions, kBothWays, wayName);

TEST_P(PtzFunctions, AllSixWorkAndEachSetIsOneTransfer) {
    VirtualCamera camera;
    camera.plugIn();
    camera.forget();

    EXPECT_TRUE(setPanTiltPosition(36000, -18000));
    EXPECT_EQ(wayTaken(camera), GetParam());
    EXPECT_TRUE(setZoomPosition(300));
    EXPECT_EQ(getPanTiltPosition(), "36000,-18000");
    EXPECT_EQ(getZoomPosition(), "300");
    EXPECT_EQ(getPanTiltData(), "-612000,12000,3600,0,-108000,324000,3600,0");
    EXPECT_EQ(getZoomData(), "0,1000,1,0");
    camera.show("all six functions");

    const auto moves = camera.transfers("SET_CUR", kPanTilt);
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0].length, "8");
    EXPECT_EQ(moves[0].data, "a08c0000b0b9ffff");
    EXPECT_EQ(moves[0].outcome, "ok");
    const auto zooms = camera.transfers("SET_CUR", kZoom);
    ASSERT_EQ(zooms.size(), 1u);
    EXPECT_EQ(zooms[0].data, "2c01");
}

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
    // The order of the ports counts, not the one that the server knows.
    cameras.plugIn("1-2");
    cameras.plugIn("1-1");
    cameras.forget();

    EXPECT_TRUE(setPanTiltPosition(72000, 36000));
    EXPECT_TRUE(setZoomPosition(77));
    EXPECT_EQ(getZoomPosition(), "77");
    cameras.show("two cameras");

    EXPECT_EQ(wayTaken(cameras), GetParam());
    ASSERT_EQ(cameras.transfers("SET_CUR", kPanTilt).size(), 1u);
    for (const LoggedTransfer &transfer : cameras.transfers()) EXPECT_EQ(transfer.camera, "1-1");
}

TEST(DriverComesAndGoes, TheNextCallTakesTheOtherWay) {
    loadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const std::string name = camerasOnBus().at(0);

    for (std::int32_t round = 1; round <= 2; ++round) {
        camera.forget();
        EXPECT_TRUE(setPanTiltPosition(3600 * round, 0));
        EXPECT_EQ(wayTaken(camera), Way::uvcvideo);

        unbindDriver(name);
        camera.forget();
        EXPECT_TRUE(setPanTiltPosition(7200 * round, 0));
        EXPECT_EQ(wayTaken(camera), Way::libusb);
        EXPECT_EQ(getPanTiltPosition(), std::to_string(7200 * round) + ",0");

        // libusb must have let go of the interface, or this would fail.
        bindDriver(name);
    }
    EXPECT_EQ(camera.count("detach"), 0);
}

}  // namespace
}  // namespace guest
