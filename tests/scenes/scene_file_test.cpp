// Scene files on disk: those that another tool made, those that are saved here, what is none, and failing
// disks.
#include "scenes/scene_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <limits>
#include <thread>

#include "scenes/file_replacement.h"
#include "support/printed.h"
#include "support/samples.h"
#include "support/store.h"
#include "support/without_rights.h"

namespace {

using support::contentOf;
using support::printedBy;
using support::sample;
using support::scene;
using testing::MatchesRegex;
using testing::StartsWith;
namespace fs = std::filesystem;

class SceneFile : public testing::Test, protected support::Store {
 protected:
    /// The room's scenes; what reading printed is in `printed`.
    std::vector<ManualPreset> read(const std::string &name = "sala") {
        std::vector<ManualPreset> presets;
        printed = printedBy([&] { presets = FileToPreset("Presets/" + name + ".presets"); });
        return presets;
    }

    void expectUnreadable(const std::string &name = "sala") {
        EXPECT_TRUE(read(name).empty());
        EXPECT_THAT(printed, MatchesRegex("cant read… [^\n]+\n")) << name;
    }

    static std::string save(const std::string &path, const std::vector<ManualPreset> &presets = {}) {
        return printedBy([&] { PresetToFile("Presets/" + path, presets); });
    }

    static void expectCantWrite(const std::string &path, const std::string &reason,
                                const std::vector<ManualPreset> &presets = {}) {
        EXPECT_THAT(save(path, presets), MatchesRegex("cant write...\n[^\n]*" + reason + "[^\n]*\n")) << path;
    }

    [[nodiscard]] std::vector<std::string> entries() const {
        std::vector<std::string> names;
        for (const auto &entry : fs::directory_iterator(store())) names.push_back(entry.path().filename());
        return names;
    }

    void expectUntouched() const {
        EXPECT_EQ(contentOf(room_), sample("accents"));
        EXPECT_THAT(entries(), testing::ElementsAre("sala.presets"));
    }

    fs::path room_ = put("sala.presets", sample("accents"));
    std::string printed;
};
using SceneFileDeathTest = SceneFile;

std::vector<ManualPreset> accents() {
    using Limits = std::numeric_limits<std::int64_t>;
    return {{"Aula Magna Ñ", "/dev/bus/usb/001/004", "IOService:/cámara", "SN-0042", 5, -12, 300},
            scene("A\u0301lava, pingüino, \U0001F3A5", 168, -90),
            scene("\"comillas\", \\ y\ttab", Limits::max(), Limits::min(), Limits::max())};
}

TEST_F(SceneFile, ReadsAndWritesTheSamplesOfAnotherTool) {
    const std::pair<const char *, std::vector<ManualPreset>> rows[] = {{"empty", {}}, {"accents", accents()}};
    for (const auto &[name, presets] : rows) {
        put("sala.presets", sample(name));
        EXPECT_EQ(read(), presets) << name;
        EXPECT_EQ(printed, "") << name;
        EXPECT_EQ(save("nueva.presets", presets), "");
        EXPECT_EQ(contentOf(store() / "nueva.presets"), sample(name)) << name;
    }
    save("nueva.presets", {scene("Pizarra", 0, 0, 60)});
    EXPECT_THAT(contentOf(ZEL_TEST_DATA "/../../docs/scene-file.md"),
                testing::HasSubstr("\n    " + contentOf(store() / "nueva.presets") + "\n"));
    put("sala.presets", sample("null"));
    EXPECT_EQ(read(), (std::vector{scene(R"(Vista "" y """")", 1, 2, 3), scene("Mesa", 4, 5, 6)}));
    put("sala.presets", sample("bracket"));
    expectUnreadable();
}

TEST_F(SceneFile, NamesOfAnyCharactersSurvive) {
    // A line break and "ull" is not the word null, however it is escaped; a zero byte does not end a name.
    const std::vector presets = {scene("a\null"), scene(std::string("a\0b", 3)),
                                 scene("[{:,\uFFFD\uFEFF\x1f\x7f"),
                                 scene("\uD7FF\uE000\U0010FFFF\u0080\u0800\U00010000")};
    EXPECT_EQ(save("sala.presets", presets), "");
    EXPECT_EQ(read(), presets);
}

TEST_F(SceneFile, WhatStandsAroundTheTextIsIgnored) {
    std::string broken = sample("accents");
    for (std::size_t at = 64; at < broken.size(); at += 65) broken.insert(at, "\n");
    for (const std::string &content : {sample("accents") + "\r\n", sample("accents") + "¡!",
                                       "\uFEFF" + sample("accents"), broken + std::string("\0\n", 2)}) {
        put("sala.presets", content);
        EXPECT_EQ(read(), accents()) << content;
    }
}

TEST_F(SceneFile, WhatIsNoSceneFileIsUnreadableAndStaysAsItIs) {
    const std::string whole = sample("accents");
    for (const std::string &content :
         {std::string(), std::string(" \n"), std::string("[]"), std::string("="), std::string("Q"),
          std::string(R"([{"Name":"a","Tilt":0}])"), whole + " x", whole + whole.substr(0, 3),
          sample("empty") + sample("empty"), whole + "\xff", std::string(100, '\0')}) {
        put("sala.presets", content);
        expectUnreadable();
        EXPECT_EQ(contentOf(room_), content);
    }
}

TEST_F(SceneFile, OnlyRegularFilesAreRead) {
    storeCentre("carpeta.presets");
    ASSERT_EQ(::mkfifo((store() / "tubo.presets").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", store() / "ceros.presets");
    fs::create_symlink("bucle.presets", store() / "bucle.presets");
    fs::resize_file(put("enorme.presets", ""), std::uintmax_t{1} << 40);
    for (const char *name : {"falta", "carpeta", "tubo", "ceros", "bucle", "enorme"}) expectUnreadable(name);
    expectUnreadable(std::string("sala.presets\0", 13));

    fs::create_symlink(support::samplePath("accents"), store() / "enlace.presets");
    EXPECT_EQ(read("enlace"), accents()) << "a link may lead out of the store";
    documents_.setDocumentsMissing(true);
    EXPECT_TRUE(read("enlace").empty());
    EXPECT_EQ(printed, "");
}

TEST_F(SceneFileDeathTest, AFileThatDecryptsToNoBase64StopsTheProgram) {
    // The second: one letter of base64 under our own key, made at the command line.
    for (const std::string &content : {sample("foreign"), std::string("RJwlpfizc28=")}) {
        put("sala.presets", content);
        EXPECT_EXIT((void)FileToPreset("Presets/sala.presets"), testing::KilledBySignal(SIGABRT),
                    "^" + support::kSilentEnd);
    }
}

/// From now on no file may grow beyond 600 bytes. With the signal ignored it looks to a writer like a full
/// disk; without, it kills one in the middle.
void fillTheDisk(void (*handler)(int)) {
    const rlimit limit{600, RLIM_INFINITY};
    std::signal(SIGXFSZ, handler);
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

const std::vector<ManualPreset> kLong(20, scene("Escena"));

TEST_F(SceneFile, OnAFullDiskOrWithoutPermissionTheOldFileStaysWhole) {
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    fillTheDisk(SIG_IGN);
    expectCantWrite("sala.presets", "too large", kLong);
    expectCantWrite("otra.presets", "too large", kLong);
    ::setrlimit(RLIMIT_FSIZE, &before);
    expectUntouched();

    for (const auto &[during, taken] : {std::pair(0555, store()), {0444, room_}, {0, store()}}) {
        const support::WithoutRights guard({taken.string()}, static_cast<mode_t>(during), 0755);
        expectCantWrite("sala.presets", ": Permission denied");
    }
    expectUntouched();
}

TEST_F(SceneFile, IsReplacedKeepingItsAccessMode) {
    fs::permissions(room_, fs::perms(0640));
    for (const std::string &name : {std::string("sala"), std::string(247, 'x'), std::string("Aula \xd1")}) {
        for (const char *text : {"Uno", "Dos"}) {
            EXPECT_EQ(save(name + ".presets", {scene(text)}), "");
            EXPECT_EQ(read(name), std::vector{scene(text)}) << name;
        }
    }
    EXPECT_EQ(entries().size(), 3U);
    EXPECT_EQ(fs::status(room_).permissions(), fs::perms(0640));
}

TEST_F(SceneFile, WhatAKilledWriterLeavesIsClearedAwayAtALaterStartAndNothingElse) {
    const pid_t writer = ::fork();
    if (writer == 0) {
        fillTheDisk(SIG_DFL);
        PresetToFile("Presets/sala.presets", kLong);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    ASSERT_TRUE(WIFSIGNALED(status)) << "not killed in the middle";
    auto before = entries();
    ASSERT_EQ(before.size(), 2U);
    std::erase_if(before, [](const std::string &name) { return name != "sala.presets"; });

    for (const char *name :
         {".escena-nueva.copia", ".escena-nueva.0123456789abcdef.presets", ".escena-nueva.0123456789abcdeX"})
        before.push_back(put(name, "").filename());
    storeCentre(".escena-nueva.0123456789abcdef");
    fs::create_symlink("sala.presets", store() / ".escena-nueva.0000000000000000");
    before.insert(before.end(), {".escena-nueva.0123456789abcdef", ".escena-nueva.0000000000000000"});
    (void)obtenerPresets();
    EXPECT_THAT(entries(), testing::UnorderedElementsAreArray(before));
}

TEST_F(SceneFile, TwoWritersAndOneThatClearsAwayDoNotDisturbEachOther) {
    std::atomic<int> running = 2;
    std::atomic<int> failures = 0;
    const auto write = [&](const char *name, char letter) {
        for (int i = 0; i < 100; ++i) {
            const std::string text(100'000, letter);
            if (scenes::replaceFile(store() / name, text) || contentOf(store() / name) != text) ++failures;
        }
        --running;
    };
    std::thread one(write, "Aula \xd1.presets", 'a');
    std::thread other(write, "Aula \xf1.presets", 'b');
    while (running > 0) scenes::removeAbandonedFiles(store());
    one.join();
    other.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(entries().size(), 3U);
}

TEST_F(SceneFile, SaysWhyItIsNotWritten) {
    expectCantWrite("Norte/sala.presets", "No such file");
    expectCantWrite("sala.presets/otra.presets", "Not a directory");
    expectCantWrite(std::string(300, 'x') + ".presets", "too long");
    EXPECT_THAT(save("sala.presets", {scene("\xff")}), StartsWith("Error tr "));
    documents_.setDocumentsMissing(true);
    EXPECT_THAT(save("sala.presets", {scene("\xff")}), StartsWith("Error tr "));
    EXPECT_EQ(save("sala.presets"), "Error 34 \n");
    expectUntouched();
}

TEST_F(SceneFile, IsWrittenThroughALinkInsideTheStoreOnly) {
    fs::create_symlink("sala.presets", store() / "enlace.presets");
    EXPECT_EQ(save("enlace.presets"), "");
    EXPECT_EQ(contentOf(room_), sample("empty"));
    EXPECT_TRUE(fs::is_symlink(store() / "enlace.presets"));

    support::writeFile(documents_.path() / "fuera", "no tocar");
    fs::create_symlink("../fuera", store() / "fuera.presets");
    fs::create_symlink("../nueva", store() / "roto.presets");
    expectCantWrite("fuera.presets", "outside");
    expectCantWrite("roto.presets", "No such file");
    EXPECT_EQ(contentOf(documents_.path() / "fuera"), "no tocar");
    EXPECT_FALSE(onDisk("nueva"));
}

}  // namespace
