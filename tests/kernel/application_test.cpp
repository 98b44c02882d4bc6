#include <gtest/gtest.h>

#include "kernel/each_way.h"
#include "support/answered_alerts.h"
#include "support/store.h"
#include "ui/content_view.h"

namespace guest {
namespace {

using support::scene;

/// Pan 20 in display units is 20 * 752 / 168 * 806 = 72156 raw, rounded to the step 72000; tilt -4 is -14879,
/// rounded to -14400.
constexpr char kBoard[] = "40190100c0c7ffff";
/// Pan 40 and tilt 4 are 144312 and 14879.
constexpr char kDoor[] = "8032020040380000";

class StoreAndCamera : public EachWay, protected support::Store {
 protected:
    StoreAndCamera() {
        storeRoom(scenes::kNoCentre, "Aula", {scene("Pizarra", 20, -4, 150), scene("Puerta", 40, 4, 500)});
    }

    support::AnsweredAlerts alerts_;
};
INSTANTIATE_TEST_SUITE_P(By, StoreAndCamera, kBothWays, wayName);

TEST_P(StoreAndCamera, ChoosingASceneSendsOneTransferForPanAndTiltAndOneForZoom) {
    VirtualCamera camera;
    camera.plugIn();
    ContentView window;
    camera.forget();

    window.selectedEscena = 1;
    window.PickerEscenaChanged();
    camera.show("one scene recalled");

    const auto moves = camera.transfers("SET_CUR", kPanTilt);
    ASSERT_EQ(moves.size(), 1u);
    EXPECT_EQ(moves[0].length, "8");
    EXPECT_EQ(moves[0].data, kDoor);
    const auto zooms = camera.transfers("SET_CUR", kZoom);
    ASSERT_EQ(zooms.size(), 1u);
    EXPECT_EQ(zooms[0].data, "f401");
    EXPECT_TRUE(alerts_.shown().empty());
}

TEST_P(StoreAndCamera, TheWholeApplicationSendsTheFirstSceneAtItsStart) {
    VirtualCamera camera;
    camera.plugIn();
    camera.forget();

    Background application({ZEL_BINARIES "/zelvoria-camara"}, "application.txt",
                           {{"QT_QPA_PLATFORM", "offscreen"}, {"HOME", documents_.path().parent_path()}});
    requireSoon(
        "the first scene", [&] { return !camera.transfers("SET_CUR", kZoom).empty(); }, seconds(60));
    // A second move would come with the rest of the start.
    EXPECT_FALSE(waitUntil([&] { return !application.isRunning(); }, seconds(2)));
    camera.show("start of the application");

    ASSERT_EQ(camera.transfers("SET_CUR", kPanTilt).size(), 1u);
    EXPECT_EQ(camera.transfers("SET_CUR", kPanTilt)[0].data, kBoard);
    ASSERT_EQ(camera.transfers("SET_CUR", kZoom).size(), 1u);
    EXPECT_EQ(camera.transfers("SET_CUR", kZoom)[0].data, "9600");
}

}  // namespace
}  // namespace guest
