#include "scenes/scene_tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "scenes/scene_file.h"
#include "store_files.h"

namespace {

using store_files::printedBy;
using testing::ElementsAre;
namespace fs = std::filesystem;

class SceneTreeTest : public store_files::StoreTest {
 protected:
    /// A room's file with one scene of that name.
    void putRoom(const std::string &path, const std::string &scene = "Mesa") {
        fs::create_directories((store() / path).parent_path());
        PresetToFile("Presets/" + path, {{scene, "", "", "", 0, 0, 0}});
    }

    /// "centre/room:scene scene" for every room and "centre/" for every centre, in the tree's order.
    std::vector<std::string> load() {
        SceneTree tree;
        printed = printedBy([&] { tree = obtenerPresets(); });
        std::vector<std::string> lines;
        for (const auto &[centre, rooms] : tree) {
            lines.push_back(centre + "/");
            for (const auto &[room, presets] : rooms) {
                lines.push_back(centre + "/" + room + ":");
                for (const ManualPreset &preset : presets) lines.back() += preset.Name;
            }
        }
        return lines;
    }

    std::string printed;
};
using SceneTreeDeathTest = SceneTreeTest;

TEST_F(SceneTreeTest, AFreshAccountGetsAStore) {
    fs::remove(store());
    fs::remove(documents.path());
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/"));
    EXPECT_TRUE(fs::is_directory(store()));
    EXPECT_EQ(printed, "file://" + store().string() + "\n");
}

TEST_F(SceneTreeTest, CentresAreDirectoriesAndRoomsAreFiles) {
    putRoom("Suelta.presets", "Uno");
    putRoom("Norte/Sala.presets", "Dos");
    putRoom("Norte/Aula Magna Ñ.presets", "Tres");
    fs::create_directory(store() / "Vacío");
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/", " Sin grupo/Suelta:Uno", "Norte/",
                                    "Norte/Aula Magna Ñ:Tres", "Norte/Sala:Dos", "Vacío/"));
    EXPECT_EQ(printed, "");
}

TEST_F(SceneTreeTest, OtherEntriesAreIgnored) {
    for (const char *name : {".DS_Store", ".hidden", ".presets", "a.", "...", "notas.txt", "x.Presets",
                             "presets.bak", "Norte/.DS_Store", "Norte/notas.txt", "Norte/x.PRESETS",
                             "Norte/sin punto", "Norte/.DS_Store.old"}) {
        store_files::write(store() / name, "");
    }
    fs::create_directory(store() / "copia.vieja");
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/", "Norte/"));
    EXPECT_EQ(printed, "");
}

TEST_F(SceneTreeTest, ARoomsNameEndsAtTheFirstDot) {
    putRoom("Aula 1.2.presets");
    putRoom(".x.presets");
    putRoom("y..presets");
    putRoom("Norte/presets");
    putRoom("Norte/Aula 3.4.presets");
    putRoom("Sur/.presets");
    EXPECT_THAT(load(),
                ElementsAre(" Sin grupo/", " Sin grupo/Aula 1:Mesa", " Sin grupo/x:Mesa", " Sin grupo/y:Mesa",
                            "Norte/", "Norte/Aula 3:Mesa", "Norte/presets:Mesa", "Sur/", "Sur/presets:Mesa"));
}

TEST_F(SceneTreeTest, OfSeveralFilesOfARoomTheOneThatItsNextSaveReplacesIsReadLast) {
    for (const char *room : {"Aula", "Aula 1"}) {
        const std::string start = room;
        for (const std::string &name : {start + ".2.presets", start + ".presets", start + ".z.presets"}) {
            putRoom(name, name);
            putRoom("Norte/" + name, name);
        }
    }
    putRoom(" Sin grupo/Aula.presets", "otra");
    EXPECT_THAT(load(),
                ElementsAre(" Sin grupo/", " Sin grupo/Aula:Aula.presets", " Sin grupo/Aula 1:Aula 1.presets",
                            "Norte/", "Norte/Aula:Aula.presets", "Norte/Aula 1:Aula 1.presets"));

    // The others are read all the same.
    for (const char *name : {"Aula.2.presets", "Norte/Aula 1.z.presets"})
        store_files::write(store() / name, "no scenes");
    EXPECT_EQ(load().size(), 6U);
    EXPECT_THAT(printed, testing::ContainsRegex("^cant read… .*\ncant read… .*\n$"));
}

TEST_F(SceneTreeTest, OfTwoSpellingsOfANameTheOneThatTheNextSaveReplacesIsShown) {
    for (const std::string &spelling : {std::string("A\u0301"), std::string("Á")}) {
        putRoom(spelling + ".presets", spelling);
        putRoom(spelling + "/Sala.presets", spelling);
    }
    putRoom("A\u0301/Otra.presets");
    const SceneTree tree = obtenerPresets();
    const auto &[room, presets] = *tree.at(" Sin grupo").find("Á");
    EXPECT_EQ(FileToPreset(scenes::roomPath(" Sin grupo", room)), presets);
    const auto &[centre, rooms] = *tree.find("Á");
    EXPECT_EQ(rooms.size(), 2U);
    EXPECT_EQ(FileToPreset(scenes::roomPath(centre, "Sala")), rooms.at("Sala"));
}

TEST_F(SceneTreeTest, WhatCannotBeListedCountsAsEmpty) {
    store_files::write(store() / "LEEME", "");
    fs::create_symlink("falta", store() / "Roto");
    putRoom("Norte/Sala.presets");
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/", "LEEME/", "Norte/", "Norte/Sala:Mesa", "Roto/"));
    EXPECT_EQ(printed, "No folder\nNo folder\n");

    fs::remove_all(store());
    store_files::write(store(), "a file where the store should be");
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/"));
    EXPECT_THAT(printed,
                testing::ContainsRegex("^file:///.*/Presets\nUnable to create directory .*\nNo folder\n$"));
}

TEST_F(SceneTreeTest, ADamagedFileIsARoomWithoutScenes) {
    store_files::write(store() / "Norte" / "Rota.presets", "[]");
    fs::create_directory(store() / "Norte" / "Carpeta.presets");
    putRoom("Norte/Sala.presets");
    EXPECT_THAT(load(),
                ElementsAre(" Sin grupo/", "Norte/", "Norte/Carpeta:", "Norte/Rota:", "Norte/Sala:Mesa"));
    EXPECT_THAT(printed, testing::ContainsRegex("^cant read… .*\ncant read… .*\n$"));
}

TEST_F(SceneTreeTest, NamesThatAreNotUtf8StayApart) {
    putRoom("Aula \xd1.presets", "uno");
    putRoom("Aula \xf1.presets", "dos");
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/", " Sin grupo/Aula \xd1:uno", " Sin grupo/Aula \xf1:dos"));
}

TEST_F(SceneTreeDeathTest, ANameOfDotsInACentreOrNoDocumentsStopsTheProgram) {
    const auto aborted = testing::KilledBySignal(SIGABRT);
    store_files::write(store() / "Norte" / "...", "");
    EXPECT_EXIT((void)obtenerPresets(), aborted, "^$");
    documents.setDocumentsMissing(true);
    EXPECT_EXIT((void)obtenerPresets(), aborted, "^$");
    EXPECT_EXIT(crearDirectorioSiNoExiste("Presets/Sur"), aborted, "^$");
    EXPECT_EXIT(eliminarDirectorio("Presets/Norte"), aborted, "^$");
}

TEST(SceneNames, CentresSortByCodePointsOfTheirNfcForms) {
    const std::vector<std::string> sorted = {
        "",  "\t",    " Sin grupo", "!x",     "(x)",       "0",    "Aula 10", "Aula 2",      "Avila",
        "N", "Z",     "Zona",       "_x",     "aula",      "nube", "z",       "A\u0301lava", "Ñ",
        "é", "ñandu", "ﬀ",          "\uFFFD", "\U0001F600"};
    std::vector<std::string> names(sorted.rbegin(), sorted.rend());
    scenes::sortCentreNames(names);
    EXPECT_EQ(names, sorted);

    SceneTree tree;
    for (const std::string &name : sorted) tree[name];
    std::vector<std::string> keys;
    for (const auto &[name, rooms] : tree) keys.push_back(name);
    EXPECT_EQ(keys, sorted);
}

TEST(SceneNames, RoomsSortWithoutRegardToCase) {
    std::vector<std::string> names = {"b",       "A", "c",      "á",      "Z",     "a",
                                      "A\u0301", "B", "Aula C", "aula b", "Aula A"};
    scenes::sortRoomNames(names);
    EXPECT_THAT(names,
                ElementsAre("A", "a", "Aula A", "aula b", "Aula C", "b", "B", "c", "Z", "á", "A\u0301"));
}

TEST(SceneNames, AreTheSameWhenCanonicallyEquivalent) {
    EXPECT_TRUE(scenes::sameName("Á", "A\u0301"));
    EXPECT_FALSE(scenes::sameName("Aula", "aula"));
    EXPECT_FALSE(scenes::sameName("Ñ", "N"));
    EXPECT_FALSE(scenes::sameName("\uFEFFñ", "ñ"));
    EXPECT_FALSE(scenes::sameName("\xd1", "\uFFFD"));
    EXPECT_FALSE(scenes::sameName(std::string("ñ\0a", 4), "ñ"));
}

}  // namespace
