#include <gtest/gtest.h>

#include "kernel/each_backend.h"
#include "support/store.h"

namespace guest {
namespace {

using support::scene;

/// Pan 20 in display units is 20 * 752 / 168 * 806 = 72156 raw, rounded to the step 72000; tilt -4 is -14879,
/// rounded to -14400.
constexpr char kBoard[] = "40190100c0c7ffff";

class StoreAndCamera : public EachBackend, protected support::Store {
 protected:
    StoreAndCamera() {
        storeRoom(scenes::kNoCentre, "Aula", {scene("Pizarra", 20, -4, 150), scene("Puerta", 40, 4, 500)});
    }
};
INSTANTIATE_TEST_SUITE_P(By, StoreAndCamera, kBothBackends, backendName);

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

    ASSERT_EQ(camera.transfers("SET_CUR", kPanTilt).size(), 1u);
    EXPECT_EQ(camera.transfers("SET_CUR", kPanTilt)[0].data, kBoard);
    ASSERT_EQ(camera.transfers("SET_CUR", kZoom).size(), 1u);
    EXPECT_EQ(camera.transfers("SET_CUR", kZoom)[0].data, "9600");
}

}  // namespace
}  // namespace guest
