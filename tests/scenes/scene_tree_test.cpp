#include "scenes/scene_tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <iterator>
#include <sstream>

#include "scenes/name_order.h"
#include "support/printed.h"
#include "support/store.h"

namespace {

using support::contentOf;
using support::printedBy;
using support::scene;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

class SceneTreeTest : public testing::Test, protected support::Store {
 protected:
    SceneTreeTest() { storeCentre(scenes::kNoCentre); }

    /// A file with one scene of that name.
    void putRoom(const std::string &path, const std::string &name = "Mesa") {
        putScenes(path, {scene(name)});
    }

    /// "centre/room:scene scene" for every room and "centre/" for every centre, in the tree's order.
    std::vector<std::string> load() {
        scenes::SceneTree tree;
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

    /// The line for a path under Documents whose characters need no encoding.
    [[nodiscard]] std::string urlLine(const std::string &path) const {
        return "file://" + documents_.path().string() + "/" + path + "\n";
    }

    static std::string create(const std::string &path) {
        return printedBy([&] { crearDirectorioSiNoExiste(path); });
    }
    static std::string remove(const std::string &path) {
        return printedBy([&] { eliminarDirectorio(path); });
    }
    static std::string save(const std::string &path) {
        return printedBy([&] { PresetToFile(path, {}); });
    }

    std::string printed;
};
using SceneTreeDeathTest = SceneTreeTest;

TEST_F(SceneTreeTest, AFreshAccountGetsAStore) {
    fs::remove_all(documents_.path());
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/"));
    EXPECT_TRUE(fs::is_directory(store()));
    EXPECT_EQ(printed, "file://" + store().string() + "\n");
}

TEST_F(SceneTreeTest, CentresAreFoldersAndRoomsAreFilesUpToTheFirstDotOfTheirNames) {
    int number = 0;
    for (const char *room :
         {"Suelta.presets", "Aula 1.2.presets", ".x.presets", "y..presets", "Norte/presets",
          "Norte/Aula Ñ.4.presets", "Aula \xd1.presets", "Aula \xf1.presets"})
        putRoom(room, std::to_string(++number));
    for (const char *other : {".DS_Store", ".hidden", ".presets", "a.", "...", "notas.txt", "x.Presets",
                              "presets.bak", "copia.vieja/b.presets", "Norte/.DS_Store", "Norte/x.PRESETS",
                              "Norte/sin punto", "Norte/.DS_Store.old"})
        put(other, "");
    storeCentre("Vacío");
    EXPECT_THAT(load(),
                ElementsAre(" Sin grupo/", " Sin grupo/Aula 1:2", " Sin grupo/Aula \xd1:7",
                            " Sin grupo/Aula \xf1:8", " Sin grupo/Suelta:1", " Sin grupo/x:3",
                            " Sin grupo/y:4", "Norte/", "Norte/Aula Ñ:6", "Norte/presets:5", "Vacío/"));
    EXPECT_EQ(printed, "");
}

TEST_F(SceneTreeTest, OfSeveralFilesOfARoomTheOneThatItsNextSaveReplacesIsShown) {
    for (const char *name :
         {"Aula.2.presets", "Aula.presets", "Aula.z.presets", "A\u0301.presets", "Á.presets"}) {
        putRoom(name, name);
        putRoom("Norte/" + std::string(name), name);
    }
    putRoom(" Sin grupo/Aula.presets", "otra");
    putRoom("A\u0301lava/Sala.presets", "uno");
    putRoom("Álava/Sala.presets", "dos");
    putRoom("A\u0301lava/Otra.presets");
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/", " Sin grupo/Aula:Aula.presets", " Sin grupo/Á:Á.presets",
                                    "Norte/", "Norte/Aula:Aula.presets", "Norte/Á:Á.presets", "Álava/",
                                    "Álava/Otra:Mesa", "Álava/Sala:dos"));

    put("Aula.2.presets", "no scenes");
    EXPECT_EQ(load().size(), 9U);
    EXPECT_THAT(printed, StartsWith("cant read… ")) << "the others are read, too";
}

TEST_F(SceneTreeTest, WhatCannotBeListedOrReadCountsAsEmpty) {
    put("LEEME", "");
    fs::create_symlink("falta", store() / "Roto");
    put("Norte/Rota.presets", "[]");
    storeCentre("Norte/Carpeta.presets");
    putRoom("Norte/Sala.presets");
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/", "LEEME/", "Norte/",
                                    "Norte/Carpeta:", "Norte/Rota:", "Norte/Sala:Mesa", "Roto/"));
    EXPECT_THAT(printed, testing::MatchesRegex("No folder\n(cant read… [^\n]*\n){2}No folder\n"));
}

TEST_F(SceneTreeDeathTest, ANameOfDotsInACentreOrNoDocumentsStopsTheProgram) {
    const auto aborted = testing::KilledBySignal(SIGABRT);
    put("Norte/...", "");
    EXPECT_EXIT((void)obtenerPresets(), aborted, "^" + support::kSilentEnd);
    documents_.setDocumentsMissing(true);
    EXPECT_EXIT((void)obtenerPresets(), aborted, "^" + support::kSilentEnd);
    EXPECT_EXIT(crearDirectorioSiNoExiste("Presets/Sur"), aborted, "^" + support::kSilentEnd);
    EXPECT_EXIT(eliminarDirectorio("Presets/Norte"), aborted, "^" + support::kSilentEnd);
}

TEST_F(SceneTreeTest, FoldersAreMadeOnceWithThoseAboveThem) {
    EXPECT_EQ(create("Presets/Norte/Planta 1"), urlLine("Presets/Norte/Planta%201"));
    EXPECT_TRUE(fs::is_directory(store() / "Norte" / "Planta 1"));
    EXPECT_EQ(create("Presets/Norte"), "");
    EXPECT_EQ(create("Presets/"), "") << "a path that callers use for the store";
    EXPECT_EQ(create("Presets/[Ñ] 50%?#"), urlLine("Presets/%5B%C3%91%5D%2050%25%3F%23"));
    EXPECT_EQ(create("Presets/..."), urlLine("Presets/...")) << "a name like any other";

    put("ocupado", "");
    fs::create_symlink("../fuera", store() / "roto");
    for (const std::string &name : {std::string("ocupado"), std::string("ocupado/dentro"),
                                    std::string("roto"), std::string("roto/dentro"), std::string(300, 'x')})
        EXPECT_THAT(create("Presets/" + name),
                    StartsWith(urlLine("Presets/" + name) + "Unable to create directory "));
    EXPECT_FALSE(onDisk("fuera"));
}

TEST_F(SceneTreeTest, FoldersAreRemovedWithAllThatTheyHoldButLinksAreNotFollowed) {
    put("Norte/a/b.presets", "x");
    put("Norte/.oculto", "x");
    put("Sala.presets", "x");
    for (const char *path :
         {"Presets/Falta.presets", "Presets/Falta/Sala.presets", "Presets/Sala.presets/dentro"})
        EXPECT_THAT(remove(path), StartsWith(urlLine(path) + "Unable to create directory ")) << path;
    EXPECT_EQ(remove("Presets/Norte"), urlLine("Presets/Norte/"));
    EXPECT_EQ(remove("Presets/Sala.presets"), urlLine("Presets/Sala.presets"));

    support::writeFile(documents_.path() / "fuera" / "f", "x");
    fs::create_directory_symlink("../fuera", store() / "enlace");
    fs::create_symlink("falta", store() / "roto");
    EXPECT_EQ(remove("Presets/enlace"), urlLine("Presets/enlace/"));
    EXPECT_EQ(remove("Presets/roto"), urlLine("Presets/roto"));
    EXPECT_TRUE(fs::is_empty(store()));
    EXPECT_EQ(contentOf(documents_.path() / "fuera" / "f"), "x");
}

/// A store with a centre and a room, and things outside it.
class StoreGuard : public SceneTreeTest {
 protected:
    StoreGuard() {
        support::writeFile(documents_.path() / "carta.txt", "carta");
        support::writeFile(documents_.root() / "ajeno" / "f", "ajeno");
        put("Norte/Sala.presets", "sala");
        fs::create_directory_symlink("../../ajeno", store() / "salida");
        fs::create_directory_symlink("../../ajeno", store() / "Norte" / "salida");
        fs::create_directory_symlink("Norte", store() / "dentro");
        fs::create_directory_symlink("../ajeno", documents_.path() / "otra");
    }

    /// Every path, with the content of files.
    [[nodiscard]] std::vector<std::string> everything() const {
        std::vector<std::string> entries;
        for (const auto &entry : fs::recursive_directory_iterator(documents_.root()))
            entries.push_back(entry.path().string() + (entry.is_regular_file() ? contentOf(entry) : ""));
        std::sort(entries.begin(), entries.end());
        return entries;
    }
};

TEST_F(StoreGuard, NothingIsReachedByASecondName) {
    std::istringstream words(
        ". / .. ../ ../ajeno/f nuevo/../../ajeno ./Presets Presets// Presets/. Presets/.. "
        "Presets/../carta.txt Presets/../../ajeno Presets/Falta/../../carta.txt Presets/Norte/ "
        "Presets//Norte Presets/y/../Norte Presets/Norte/.. /Presets/Norte "
        "Presets/Norte/./Sala.presets Presets/Norte//Sala.presets Presets/Norte/x/../Sala.presets "
        "Presets/salida/f Presets/salida/nuevo Presets/dentro/salida/f otra/f");
    std::vector<std::string> names{std::istream_iterator<std::string>(words), {}};
    names.insert(names.end(), {"", std::string("Presets/Norte\0x", 15), std::string("Presets/\0", 9)});
    const auto before = everything();
    for (const std::string &path : names) {
        EXPECT_THAT(remove(path), HasSubstr("\nUnable to create directory ")) << path;
        EXPECT_THAT(create(path), HasSubstr("\nUnable to create directory ")) << path;
        EXPECT_THAT(save(path), StartsWith("cant write...\n")) << path;
        ASSERT_EQ(everything(), before) << path;
    }
    for (const char *path : {"Presets", "Presets/"}) {
        EXPECT_THAT(remove(path), HasSubstr("\nUnable to create directory "));
        EXPECT_THAT(save(path), StartsWith("cant write...\n"));
        EXPECT_EQ(everything(), before);
    }
}

TEST_F(StoreGuard, PlainNamesBesideTheStoreAndCentresThatAreLinksWithinItAreTaken) {
    EXPECT_EQ(save("suelto.presets"), "");
    EXPECT_TRUE(fs::exists(documents_.path() / "suelto.presets"));
    EXPECT_EQ(remove("suelto.presets"), urlLine("suelto.presets"));
    EXPECT_EQ(save("Presets/dentro/x.presets"), "");
    EXPECT_TRUE(fs::exists(store() / "Norte" / "x.presets"));
    EXPECT_EQ(create("Presets/..."), urlLine("Presets/..."));
}

TEST_F(StoreGuard, TheStoreMayItselfBeALink) {
    const fs::path disk = documents_.root() / "disco";
    fs::rename(store(), disk);
    fs::create_directory_symlink(disk, store());
    EXPECT_EQ(create("Presets/Sur"), urlLine("Presets/Sur"));
    EXPECT_EQ(save("Presets/Sur/x.presets"), "");
    EXPECT_TRUE(fs::exists(disk / "Sur" / "x.presets"));
    EXPECT_EQ(remove("Presets/Norte"), urlLine("Presets/Norte/"));
    EXPECT_THAT(remove("Presets/salida/f"), HasSubstr("\nUnable to create directory "));

    fs::rename(disk, documents_.root() / "desmontado");
    EXPECT_THAT(save("Presets/x.presets"), StartsWith("cant write...\n"));
    EXPECT_THAT(load(), ElementsAre(" Sin grupo/"));
    EXPECT_THAT(printed,
                testing::MatchesRegex("file:///.*/Presets\nUnable to create directory .*\nNo folder\n"));
    EXPECT_FALSE(fs::exists(disk));
}

TEST(SceneNames, CentresSortByCodePointsOfTheirNfcForms) {
    const std::vector<std::string> sorted = {"",       " Sin grupo", "!x",        "0",           "Aula 10",
                                             "Aula 2", "Zona",       "aula",      "A\u0301lava", "Ñ",
                                             "ñandu",  "ﬀ",          "\U0001F600"};
    std::vector<std::string> names(sorted.rbegin(), sorted.rend());
    scenes::sortCentreNames(names);
    EXPECT_EQ(names, sorted);
}

TEST(SceneNames, RoomsSortWithoutRegardToCase) {
    std::vector<std::string> names = {"b", "A", "c", "á", "Z", "a", "A\u0301", "B", "Aula C", "aula b"};
    scenes::sortRoomNames(names);
    EXPECT_THAT(names, ElementsAre("A", "a", "aula b", "Aula C", "b", "B", "c", "Z", "á", "A\u0301"));
}

TEST(SceneNames, AreTheSameWhenCanonicallyEquivalent) {
    EXPECT_TRUE(scenes::sameName("Á", "A\u0301"));
    EXPECT_FALSE(scenes::sameName("Aula", "aula"));
    EXPECT_FALSE(scenes::sameName("\uFEFFñ", "ñ"));
    EXPECT_FALSE(scenes::sameName("\xd1", "\uFFFD"));
    EXPECT_FALSE(scenes::sameName(std::string("ñ\0a", 4), "ñ"));
}

}  // namespace
