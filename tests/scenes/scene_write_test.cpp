#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>

#include "scenes/scene_file.h"
#include "store_files.h"
#include "support/without_rights.h"

namespace {

using store_files::contentOf;
using store_files::printedBy;
using store_files::sample;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

/// No file may grow beyond `bytes` while this lives: to the writer it looks like a full disk.
class FullDisk {
 public:
    explicit FullDisk(rlim_t bytes) : previousHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &previous_);
        const rlimit limit{bytes, previous_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, previousHandler_);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

 private:
    void (*previousHandler_)(int);
    rlimit previous_{};
};

class SceneWrite : public store_files::StoreTest {
 protected:
    SceneWrite() { store_files::write(room(), sample("ten")); }

    [[nodiscard]] fs::path room() const { return store() / "sala.presets"; }

    /// Writes `presets` to `path`; that it fails, and says so in two lines.
    static void expectCantWrite(const std::string &path, const std::string &reason,
                                const std::vector<ManualPreset> &presets = {}) {
        const std::string printed = printedBy([&] { PresetToFile(path, presets); });
        EXPECT_THAT(printed, AllOf(StartsWith("cant write...\n"), HasSubstr(reason))) << path;
        EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 2) << printed;
    }

    [[nodiscard]] std::vector<std::string> entries() const {
        std::vector<std::string> names;
        for (const auto &entry : fs::directory_iterator(store())) names.push_back(entry.path().filename());
        return names;
    }
};

TEST_F(SceneWrite, ReplacesTheOldFileAndLeavesNothingElse) {
    EXPECT_EQ(printedBy([] { PresetToFile("Presets/sala.presets", {}); }), "");
    EXPECT_EQ(contentOf(room()), sample("empty"));
    EXPECT_THAT(entries(), testing::ElementsAre("sala.presets"));
}

TEST_F(SceneWrite, OnAFullDiskTheOldFileStaysWhole) {
    {
        const FullDisk full(600);
        expectCantWrite("Presets/sala.presets", "too large",
                        std::vector<ManualPreset>(20, {"Escena", "", "", "", 0, 0, 0}));
        expectCantWrite("Presets/otra.presets", "too large",
                        std::vector<ManualPreset>(20, {"Escena", "", "", "", 0, 0, 0}));
    }
    EXPECT_EQ(contentOf(room()), sample("ten"));
    EXPECT_THAT(entries(), testing::ElementsAre("sala.presets"));
}

TEST_F(SceneWrite, InAReadOnlyFolderTheOldFileStaysWhole) {
    {
        const support::WithoutRights guard({store().string()}, 0555, 0755);
        expectCantWrite("Presets/sala.presets", "ermission denied");
        expectCantWrite("Presets/otra.presets", "ermission denied");
    }
    EXPECT_EQ(contentOf(room()), sample("ten"));
    EXPECT_THAT(entries(), testing::ElementsAre("sala.presets"));
}

TEST_F(SceneWrite, ANameAsLongAsTheDiskAllowsIsWrittenAgainAndAgain) {
    for (const std::size_t length : {std::size_t{235}, std::size_t{243}, std::size_t{247}}) {
        const std::string path = "Presets/" + std::string(length, 'x') + ".presets";
        for (const char *name : {"Uno", "Dos", "Tres"}) {
            ManualPreset scene;
            scene.Name = name;
            PresetToFile(path, {scene});
            EXPECT_EQ(FileToPreset(path), std::vector{scene}) << length;
        }
        fs::remove(documents.path() / path);
    }
    EXPECT_THAT(entries(), testing::ElementsAre("sala.presets"));
}

TEST_F(SceneWrite, NeedsAFolderAndAPlaceForAFile) {
    expectCantWrite("Presets/Norte/sala.presets", "No such file");
    expectCantWrite("Presets/sala.presets/otra.presets", "Not a directory");
    expectCantWrite("Presets/" + std::string(300, 'x') + ".presets", "too long");
    fs::create_directory(store() / "carpeta.presets");
    expectCantWrite("Presets/carpeta.presets", "directory");
    expectCantWrite("Presets", "directory");
    EXPECT_FALSE(fs::exists(store() / "Norte"));
    EXPECT_EQ(contentOf(room()), sample("ten"));
}

TEST_F(SceneWrite, NamesThatAreNotUtf8AreErrorTrBeforeAnythingIsTouched) {
    const std::vector<ManualPreset> presets = {{"\xff", "", "", "", 0, 0, 0}};
    EXPECT_THAT(printedBy([&] { PresetToFile("Presets/sala.presets", presets); }), StartsWith("Error tr "));
    EXPECT_EQ(contentOf(room()), sample("ten"));
    documents.setDocumentsMissing(true);
    EXPECT_THAT(printedBy([&] { PresetToFile("Presets/sala.presets", presets); }), StartsWith("Error tr "));
}

TEST_F(SceneWrite, WithoutADocumentsFolderItIsError34) {
    documents.setDocumentsMissing(true);
    EXPECT_EQ(printedBy([] { PresetToFile("Presets/sala.presets", {}); }), "Error 34 \n");
    EXPECT_EQ(contentOf(room()), sample("ten"));
}

TEST_F(SceneWrite, ALinkIsWrittenThroughInsideTheStoreOnly) {
    fs::create_symlink("sala.presets", store() / "enlace.presets");
    EXPECT_EQ(printedBy([] { PresetToFile("Presets/enlace.presets", {}); }), "");
    EXPECT_EQ(contentOf(room()), sample("empty"));
    EXPECT_TRUE(fs::is_symlink(store() / "enlace.presets"));

    store_files::write(documents.path() / "fuera", "no tocar");
    fs::create_symlink("../fuera", store() / "fuera.presets");
    expectCantWrite("Presets/fuera.presets", "outside");
    EXPECT_EQ(contentOf(documents.path() / "fuera"), "no tocar");
    fs::create_symlink("../nueva", store() / "roto.presets");
    expectCantWrite("Presets/roto.presets", "No such file");
    EXPECT_FALSE(fs::exists(documents.path() / "nueva"));
}

}  // namespace
