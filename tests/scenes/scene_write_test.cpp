#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <thread>

#include "scenes/file_replacement.h"
#include "scenes/scene_file.h"
#include "scenes/scene_tree.h"
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

TEST_F(SceneWrite, WithoutPermissionTheOldFileStaysWholeAndThePermissionIsTheReason) {
    for (const auto &[during, taken] : {std::pair(0555, store()), {0444, room()}, {0, store()}}) {
        const support::WithoutRights guard({taken.string()}, static_cast<mode_t>(during), 0755);
        expectCantWrite("Presets/sala.presets", ": Permission denied");
        if (taken == store()) expectCantWrite("Presets/Norte/otra.presets", ": ");
    }
    EXPECT_EQ(contentOf(room()), sample("ten"));
    EXPECT_THAT(entries(), testing::ElementsAre("sala.presets"));
}

TEST_F(SceneWrite, NamesThatTheDiskTakesAreWrittenAgainAndAgain) {
    for (const std::string &name : {std::string(235, 'x'), std::string(247, 'x'), std::string("Aula \xd1")}) {
        const std::string path = "Presets/" + name + ".presets";
        for (const char *scene : {"Uno", "Dos"}) {
            const std::vector<ManualPreset> presets = {{scene, "", "", "", 0, 0, 0}};
            EXPECT_EQ(printedBy([&] { PresetToFile(path, presets); }), "");
            EXPECT_EQ(FileToPreset(path), presets) << path;
        }
        EXPECT_EQ(entries().size(), 2U);
        fs::remove(documents.path() / path);
    }
}

TEST_F(SceneWrite, KeepsTheAccessModeOfTheOldFile) {
    fs::permissions(room(), fs::perms(0640));
    EXPECT_EQ(printedBy([] { PresetToFile("Presets/sala.presets", {}); }), "");
    EXPECT_EQ(fs::status(room()).permissions(), fs::perms(0640));
}

TEST_F(SceneWrite, WhatAKilledWriterLeavesIsClearedAwayAtALaterStartAndNothingElse) {
    const pid_t writer = ::fork();
    if (writer == 0) {
        const rlimit limit{600, 600};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        PresetToFile("Presets/sala.presets", std::vector<ManualPreset>(20));
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    ASSERT_TRUE(WIFSIGNALED(status)) << "not killed in the middle";
    ASSERT_EQ(entries().size(), 2U);

    store_files::write(store() / ".escena-nueva.copia", "");
    store_files::write(store() / ".escena-nueva.0123456789abcdef.presets", sample("empty"));
    fs::create_directory(store() / ".escena-nueva.0123456789abcdef");
    fs::create_symlink("sala.presets", store() / ".escena-nueva.0000000000000000");
    (void)obtenerPresets();
    EXPECT_THAT(entries(), testing::UnorderedElementsAre("sala.presets", ".escena-nueva.copia",
                                                         ".escena-nueva.0123456789abcdef.presets",
                                                         ".escena-nueva.0123456789abcdef",
                                                         ".escena-nueva.0000000000000000"));
}

TEST_F(SceneWrite, TwoWritersAndOneThatClearsAwayDoNotDisturbEachOther) {
    std::atomic<int> running = 2;
    std::atomic<int> failures = 0;
    const auto writer = [&](const char *name, char letter) {
        for (int i = 0; i < 100; ++i) {
            const std::string text(100'000, letter);
            if (scenes::replaceFile(store() / name, text) || contentOf(store() / name) != text) ++failures;
        }
        --running;
    };
    std::thread one(writer, "Aula \xd1.presets", 'a');
    std::thread other(writer, "Aula \xf1.presets", 'b');
    while (running > 0) scenes::removeAbandonedFiles(store());
    one.join();
    other.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(entries().size(), 3U);
}

TEST_F(SceneWrite, NeedsAFolderAndAPlaceForAFile) {
    expectCantWrite("Presets/Norte/sala.presets", "No such file");
    expectCantWrite("Presets/sala.presets/otra.presets", "Not a directory");
    expectCantWrite("Presets/" + std::string(300, 'x') + ".presets", "too long");
    fs::create_directory(store() / "carpeta.presets");
    expectCantWrite("Presets/carpeta.presets", "directory");
    expectCantWrite("Presets", "folder of scenes");
    EXPECT_FALSE(fs::exists(store() / "Norte"));
    EXPECT_EQ(contentOf(room()), sample("ten"));
}

TEST_F(SceneWrite, ScenesThatAreNotUtf8AreErrorTrAndNoDocumentsFolderIsError34) {
    const std::vector<ManualPreset> presets = {{"\xff", "", "", "", 0, 0, 0}};
    EXPECT_THAT(printedBy([&] { PresetToFile("Presets/sala.presets", presets); }), StartsWith("Error tr "));
    EXPECT_EQ(contentOf(room()), sample("ten"));
    documents.setDocumentsMissing(true);
    EXPECT_THAT(printedBy([&] { PresetToFile("Presets/sala.presets", presets); }), StartsWith("Error tr "));
    EXPECT_EQ(printedBy([] { PresetToFile("Presets/sala.presets", {}); }), "Error 34 \n");
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
