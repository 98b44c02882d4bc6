#include "scenes/scene_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <limits>

#include "scenes/scene_codec.h"
#include "scenes/utf8.h"
#include "store_files.h"

namespace {

using scenes::decodeSceneText;
using Outcome = scenes::DecodedScenes::Outcome;
using store_files::contentOf;
using store_files::printedBy;
using store_files::sample;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

class SceneFile : public store_files::StoreTest {
 protected:
    void put(const std::string &content) { store_files::write(store() / "sala.presets", content); }

    /// The room's scenes; what reading printed is in `printed`.
    std::vector<ManualPreset> read(const std::string &name = "sala") {
        std::vector<ManualPreset> presets;
        printed = printedBy([&] { presets = FileToPreset("Presets/" + name + ".presets"); });
        return presets;
    }

    void expectUnreadable(const std::string &name = "sala") {
        EXPECT_TRUE(read(name).empty());
        EXPECT_THAT(printed, AllOf(StartsWith("cant read… "), EndsWith("\n")));
        EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 1) << printed;
    }

    std::string printed;
};
using SceneFileDeathTest = SceneFile;

std::vector<ManualPreset> accents() {
    return {{"Aula Magna Ñ", "/dev/bus/usb/001/004", "IOService:/cámara", "SN-0042", 5, -12, 300},
            {"A\u0301lava, pingüino, \U0001F3A5", "", "", "", -90, 168, 0},
            {"\"comillas\", \\ y\ttab", "", "", "", 2, 1, 3}};
}

std::vector<ManualPreset> ten() {
    std::vector<ManualPreset> presets;
    for (std::int64_t i = 1; i < 10; ++i) {
        presets.push_back({"Escena " + std::to_string(i), "", "", "", 3 * i - 15, 10 * i - 50, 100 * i});
    }
    using Limits = std::numeric_limits<std::int64_t>;
    presets.push_back({"Extremos", "", "", "", Limits::min(), Limits::max(), Limits::max()});
    return presets;
}

TEST_F(SceneFile, ReadsAndWritesTheSamplesOfAnotherTool) {
    const std::pair<const char *, std::vector<ManualPreset>> rows[] = {
        {"empty", {}}, {"accents", accents()}, {"ten", ten()}};
    for (const auto &[name, presets] : rows) {
        put(sample(name));
        EXPECT_EQ(read(), presets) << name;
        EXPECT_EQ(printed, "") << name;

        EXPECT_EQ(printedBy([&saved = presets] { PresetToFile("Presets/nueva.presets", saved); }), "");
        EXPECT_EQ(contentOf(store() / "nueva.presets"), sample(name)) << name;
        fs::remove(store() / "nueva.presets");
    }
}

TEST_F(SceneFile, AClosingBracketInANameMakesTheFileUnreadable) {
    put(sample("bracket"));
    expectUnreadable();
}

TEST_F(SceneFile, TheWordNullBecomesTwoQuotesAndCostsNoOtherScene) {
    put(sample("null"));
    const std::vector<ManualPreset> expected = {{R"(Vista "" y """")", "", "", "", 2, 1, 3},
                                                {"Mesa", "", "", "", 5, 4, 6}};
    EXPECT_EQ(read(), expected);
}

TEST_F(SceneFile, NamesOfAnyCharactersSurvive) {
    // A line break and "ull" is not the word null, however it is escaped; a zero byte does not end a name.
    const std::vector<ManualPreset> presets = {{"a\null", "", "", "", 0, 0, 0},
                                               {std::string("a\0b", 3), "", "", "", 0, 0, 0},
                                               {"[{:,\u2028\uFFFD\uFEFF", "", "", "", 0, 0, 0}};
    PresetToFile("Presets/sala.presets", presets);
    EXPECT_EQ(read(), presets);
}

TEST_F(SceneFile, WhatStandsAroundTheTextIsIgnored) {
    for (const char *tail : {"\n", "\r\n", " ", "\t\n\n", "¡!"}) {
        put(sample("accents") + tail);
        EXPECT_EQ(read(), accents()) << tail;
    }
    put("\uFEFF" + sample("accents"));
    EXPECT_EQ(read(), accents()) << "byte order mark";
    std::string broken = sample("accents");
    for (std::size_t at = 64; at < broken.size(); at += 65) broken.insert(at, "\n");
    put(broken + std::string("\0\n", 2));
    EXPECT_EQ(read(), accents()) << "broken into lines";
}

TEST_F(SceneFile, WhatIsNoSceneFileIsUnreadableAndStaysAsItIs) {
    const std::string json =
        R"([{"Name":"a","DS_Path":"","HID_Path":"","HID_SerialNumber":"","Tilt":0,"Pan":0,"Zoom":0}])";
    const std::string whole = sample("ten");
    for (const std::string &content :
         {std::string(), std::string(" \n"), std::string("[]"), std::string("="), std::string("Q"), json,
          whole + " x", whole + whole.substr(0, 3), sample("empty") + sample("empty"), whole + "\xff",
          std::string(100, '\0')}) {
        put(content);
        expectUnreadable();
        EXPECT_EQ(contentOf(store() / "sala.presets"), content);
    }
}

TEST_F(SceneFile, OnlyRegularFilesAreRead) {
    expectUnreadable("falta");
    fs::create_directory(store() / "carpeta.presets");
    expectUnreadable("carpeta");
    ASSERT_EQ(::mkfifo((store() / "tubo.presets").c_str(), 0600), 0);
    expectUnreadable("tubo");
    fs::create_symlink("/dev/zero", store() / "ceros.presets");
    expectUnreadable("ceros");
    fs::create_symlink("bucle.presets", store() / "bucle.presets");
    expectUnreadable("bucle");
    store_files::write(store() / "enorme.presets", "");
    fs::resize_file(store() / "enorme.presets", std::uintmax_t{1} << 40);
    expectUnreadable("enorme");
    EXPECT_THAT(printed, HasSubstr("too large"));
    expectUnreadable(std::string("sala\0.presets", 13));

    fs::create_symlink(store_files::samplePath("ten"), store() / "enlace.presets");
    EXPECT_EQ(read("enlace"), ten());
    documents.setDocumentsMissing(true);
    EXPECT_TRUE(read("enlace").empty());
    EXPECT_EQ(printed, "");
}

TEST_F(SceneFileDeathTest, AFileThatDecryptsToNoBase64StopsTheProgram) {
    put(sample("foreign"));
    EXPECT_EXIT((void)FileToPreset("Presets/sala.presets"), testing::KilledBySignal(SIGABRT), "^$");
    // One letter of base64 under our own key, made at the command line.
    put("RJwlpfizc28=");
    EXPECT_EXIT((void)FileToPreset("Presets/sala.presets"), testing::KilledBySignal(SIGABRT), "^$");
}

TEST(SceneCodec, DecodesBase64OfNothingToAnUnreadableFile) {
    for (const char *json : {"", "]", "]]]", "null", "{"}) {
        const auto text = scenes::sceneTextFromJson(json);
        ASSERT_TRUE(text);
        EXPECT_EQ(decodeSceneText(*text).outcome, Outcome::Unreadable) << json;
    }
}

TEST(SceneCodec, KeepsTheFirstPieceAndRepairsIt) {
    const std::string scene =
        R"({"Name":"a)"
        "\xE2\x82"
        R"(b","DS_Path":null,"HID_Path":"","HID_SerialNumber":"","Tilt":0,"Pan":0,"Zoom":1})";
    const std::vector<ManualPreset> expected = {
        {"a\uFFFD"
         "b",
         "", "", "", 0, 0, 1}};
    for (const std::string &json : {"[" + scene + "]", "]][" + scene + "]trailing]", "[" + scene}) {
        const auto decoded = decodeSceneText(*scenes::sceneTextFromJson(json));
        EXPECT_EQ(decoded.outcome, Outcome::Read) << json << decoded.error;
        EXPECT_EQ(decoded.presets, expected) << json;
    }
}

TEST(SceneCodec, ATruncatedFileNeverGivesOtherScenes) {
    for (const char *name : {"empty", "accents", "ten", "bracket", "null", "foreign"}) {
        const std::string whole = sample(name);
        const auto presets = decodeSceneText(whole).presets;
        for (std::size_t length = 0; length < whole.size(); ++length) {
            // A copy of its own, so that reading past its end is seen by the sanitizers.
            const std::string prefix = whole.substr(0, length);
            const auto decoded = decodeSceneText(prefix);
            if (length % 4 != 0) {
                EXPECT_EQ(decoded.outcome, Outcome::Unreadable) << name << " " << length;
            }
            if (decoded.outcome == Outcome::Read) {
                EXPECT_EQ(decoded.presets, presets) << name << " " << length;
            }
        }
    }
}

TEST(SceneCodec, DamageAnywhereEndsInOneOfTheThreeWays) {
    const std::string whole = sample("accents");
    int unharmed = 0;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const char *damage : {"A", "/", "z", "=", "\x80", "", "AA"}) {
            const std::string damaged = whole.substr(0, at) + damage + whole.substr(at + 1);
            const auto decoded = decodeSceneText(damaged);
            if (damaged != whole && decoded.presets == accents()) ++unharmed;
            EXPECT_EQ(decoded.outcome == Outcome::Unreadable, !decoded.error.empty()) << at << damage;
            EXPECT_EQ(decoded.error.find('\n'), std::string::npos) << decoded.error;
            if (decoded.outcome != Outcome::Read) {
                EXPECT_TRUE(decoded.presets.empty());
            }
            for (const ManualPreset &preset : decoded.presets) EXPECT_TRUE(scenes::isValidUtf8(preset.Name));
        }
    }
    // Harmless only where nothing but padding stands, at the very end.
    EXPECT_LT(unharmed, 70);
}

}  // namespace
