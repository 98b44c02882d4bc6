#pragma once

#include <gtest/gtest.h>

#include "ptz/camera_motion.h"
#include "support/answered_alerts.h"
#include "support/simulated_camera.h"
#include "support/store.h"

namespace support {

/// A temporary store, a simulated camera and alerts with prepared answers.
class BenchTest : public testing::Test, protected Store {
 protected:
    BenchTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
    ~BenchTest() override { DemoMode = false; }

    /// Two centres beside the placeholder, one of them without rooms.
    void storeSample() {
        storeRoom("Norte", "Aula B", {scene("Pizarra", 8, 5, 100), scene("Puerta", -20, 0, 0)});
        storeRoom("Norte", "aula A", {scene("Mesa", 30, -5, 200)});
        storeRoom("Norte", "Vacía", {});
        storeCentre("Sur");
    }

    SimulatedCamera bench_;
    AnsweredAlerts alerts_;
};

}  // namespace support
