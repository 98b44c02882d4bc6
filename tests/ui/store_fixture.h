#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "ptz/camera_motion.h"
#include "scenes/scene_file.h"
#include "scenes/scene_tree.h"
#include "support/answered_alerts.h"
#include "support/scenes.h"
#include "support/simulated_camera.h"
#include "support/temporary_documents.h"

using support::scene;

/// A temporary store, a simulated camera and alerts with prepared answers.
class StoreTest : public testing::Test {
 protected:
    StoreTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
    ~StoreTest() override {
        Gruposss.clear();
        ListaGrupos.clear();
        ListaSubgrupos.clear();
        ListaEscenas.clear();
        DemoMode = false;
    }

    void storeRoom(const std::string &centre, const std::string &room,
                   const std::vector<ManualPreset> &scenes) {
        storeCentre(centre);
        PresetToFile(scenes::roomPath(centre, room), scenes);
    }

    void storeCentre(const std::string &centre) {
        std::filesystem::create_directories(
            documents_.path() / (centre == scenes::kNoCentre ? PresetsFolder : scenes::centrePath(centre)));
    }

    /// Two centres beside the placeholder, one of them without rooms.
    void storeSample() {
        storeRoom("Norte", "Aula B", {scene("Pizarra", 8, 5, 100), scene("Puerta", -20, 0, 0)});
        storeRoom("Norte", "aula A", {scene("Mesa", 30, -5, 200)});
        storeRoom("Norte", "Vacía", {});
        storeCentre("Sur");
    }

    [[nodiscard]] bool onDisk(const std::string &path) const {
        return std::filesystem::exists(documents_.path() / path);
    }

    support::TemporaryDocuments documents_;
    support::SimulatedCamera bench_;
    support::AnsweredAlerts alerts_;
};
