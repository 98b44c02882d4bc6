// What the text of a scene file holds, whatever wrote its JSON and whatever became of it.
#include "scenes/scene_codec.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <limits>
#include <sstream>

#include "scenes/scene_layers.h"
#include "scenes/utf8.h"
#include "support/printed.h"
#include "support/samples.h"

namespace {

using scenes::DecodedScenes;
using scenes::decodeSceneText;
using Outcome = DecodedScenes::Outcome;
using support::sample;

/// What holds of every text: the reason, one line of a usual length, where there are no scenes, and names
/// that can be shown.
DecodedScenes decoded(const std::string &text) {
    auto result = decodeSceneText(text);
    EXPECT_EQ(result.outcome == Outcome::unreadable, !result.error.empty()) << text;
    EXPECT_EQ(result.error.find('\n'), std::string::npos) << result.error;
    EXPECT_LT(result.error.size(), 300U);
    EXPECT_TRUE(result.outcome == Outcome::read || result.presets.empty()) << text;
    for (const ManualPreset &preset : result.presets) EXPECT_TRUE(scenes::isValidUtf8(preset.Name)) << text;
    return result;
}

/// The scenes of a file with that JSON text.
std::optional<std::vector<ManualPreset>> scenesOf(const std::string &json) {
    auto result = decoded(scenes::sceneTextFromJson(json).value());
    EXPECT_NE(result.outcome, Outcome::fatal) << json;
    if (result.outcome != Outcome::read) return std::nullopt;
    return std::move(result.presets);
}

/// An array of one scene, with a name and a pan as they are written in JSON.
std::string sceneWith(const std::string &name, const std::string &pan = "2") {
    return R"([{"Zoom":3,"Tilt":1,"Name":)" + name + R"(,"HID_Path":"h","DS_Path":null,"Pan":)" + pan +
           R"(,"HID_SerialNumber":"s"}])";
}

TEST(SceneCodec, TakesEveryWayToWriteAWholeNumberOfSixtyFourBitsAndNoOther) {
    const std::pair<const char *, std::int64_t> rows[] = {
        {"5.0", 5},
        {"10e-1", 1},
        {"9223372036854775807", INT64_MAX},
        {"-9223372036854775808", INT64_MIN},
        {"9007199254740993", 9007199254740993},
    };
    for (const auto &[text, value] : rows)
        EXPECT_EQ(scenesOf(sceneWith("\"n\"", text)).value().at(0).Pan, value) << text;

    std::istringstream others(
        "5.5 1e-1 1e400 9223372036854775807.0 -9223372036854775808.0 9223372036854775808 "
        "-9223372036854775809 18446744073709551616 NaN \"5\" true null {}");
    for (std::string text; others >> text;) EXPECT_FALSE(scenesOf(sceneWith("\"n\"", text))) << text;
}

TEST(SceneCodec, TheWordNullBecomesTwoQuotes) {
    const std::pair<const char *, const char *> rows[] = {
        {R"("null")", R"("")"},    {R"("nullnull")", R"("""")"},  {R"("\"null\\null")", R"("""\"")"},
        {R"("a\null")", "a\null"}, {R"("nul NULL")", "nul NULL"}, {"null", ""},
    };
    for (const auto &[literal, name] : rows) {
        const ManualPreset expected{name, "", "h", "s", 1, 2, 3};
        EXPECT_EQ(scenesOf(sceneWith(literal)), std::vector{expected}) << literal;
    }
}

TEST(SceneCodec, RequiresAnArrayOfScenesWithTheirSevenKeys) {
    const ManualPreset expected{"n", "", "h", "s", 1, 2, 3};
    EXPECT_EQ(scenesOf(sceneWith(R"("n","Extra":{"a":{"b":false}},"name":7)")), std::vector{expected});
    EXPECT_EQ(scenesOf("\uFEFF " + sceneWith(R"("n")")), std::vector{expected});
    for (const char *key : {"Name", "DS_Path", "HID_Path", "HID_SerialNumber", "Tilt", "Pan", "Zoom"}) {
        std::string renamed = sceneWith(R"("n")");
        renamed.replace(renamed.find("\"" + std::string(key) + "\"") + 1, 1, "x");
        EXPECT_FALSE(scenesOf(renamed)) << renamed;
    }
    for (const char *json : {"", "]", "]]]", "null", "{", "{}", "7", "[[", "[1", "[{}"})
        EXPECT_FALSE(scenesOf(json)) << json;
    for (const char *literal : {"7", "{}", "\"\t\"", R"("\ud83d")", "\"n"})
        EXPECT_FALSE(scenesOf(sceneWith(literal))) << literal;
    // Deep nesting must end in a refusal, not in an exhausted stack.
    std::string deep = "[";
    for (int level = 0; level < 200000; ++level) deep += R"({"a":)";
    EXPECT_FALSE(scenesOf(deep));
}

TEST(SceneCodec, ReadsTheLongestNameThatCanBeTypedAndNoneOfMegabytes) {
    constexpr std::size_t kTyped = 98301;  // 32,767 characters of three bytes
    EXPECT_TRUE(scenesOf(sceneWith('"' + std::string(kTyped, 'n') + '"')));
    EXPECT_FALSE(scenesOf(sceneWith('"' + std::string(100000, 'n'))));
    std::string quotes;
    for (int i = 0; i < 1 << 20; ++i) quotes += R"(\")";
    EXPECT_FALSE(scenesOf(sceneWith('"' + quotes + '"')));
}

TEST(SceneCodec, KeepsWhatStandsBeforeTheFirstBracketAndRepairsIt) {
    const std::string array =
        sceneWith("\"a\U000FFFFF\xE2\x82!\xC0\xAF\xED\xA0\x80\xF4\x91\x92\x93\xE1\x80\xC0\xF0\x9F\x8E\"");
    const std::string name = "a\U000FFFFF\uFFFD!" + std::string("\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD") +
                             "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD";
    const ManualPreset expected{name, "", "h", "s", 1, 2, 3};
    for (const std::string &json : {array, "]]" + array + "trailing]", array.substr(0, array.size() - 1)})
        EXPECT_EQ(scenesOf(json), std::vector{expected}) << json;
}

TEST(SceneCodec, ATruncatedOrDamagedFileNeverGivesOtherScenesThanItsOwn) {
    for (const char *name : {"empty", "accents", "bracket", "null", "foreign"}) {
        const std::string whole = sample(name);
        const auto presets = decodeSceneText(whole).presets;
        for (std::size_t length = 0; length < whole.size(); ++length) {
            // A copy of its own, so that reading past its end is seen by the sanitizers.
            const auto cut = decoded(whole.substr(0, length));
            EXPECT_TRUE(length % 4 == 0 || cut.outcome == Outcome::unreadable) << name << " " << length;
            EXPECT_TRUE(cut.outcome != Outcome::read || cut.presets == presets) << name << " " << length;
        }
    }
    const std::string whole = sample("accents");
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const char *damage : {"A", "/", "=", "\x80", "", "AA"})
            decoded(whole.substr(0, at) + damage + whole.substr(at + 1));
    }
}

using Bytes = std::vector<std::uint8_t>;
using testing::KilledBySignal;

/// `text` and zeros behind it.
Bytes withZeros(std::string_view text, std::size_t zeros) {
    Bytes bytes(text.begin(), text.end());
    bytes.resize(bytes.size() + zeros, 0);
    return bytes;
}

TEST(SceneShiftDeathTest, WrapsAtTheRangeOfCharacterCodesAndStopsAtWhatIsNone) {
    EXPECT_EQ(caesarDataToData({43, 122, 0, 244}, 11), (Bytes{54, 133, 11, 255}));
    EXPECT_EQ(caesarDataToData({0, 7}, 65535 + 3), (Bytes{3, 10})) << "65535 codes further: the same again";

    EXPECT_EQ(caesarDataToString({76, 11, 138, 139, 255}, 5, -11), std::string("A\0\x7f\u0080\u00f4", 7));
    EXPECT_EQ(caesarDataToString({0, 10}, 2, -11), "\uFFF4\uFFFE") << "base64 decoding skips them";
    EXPECT_EQ(caesarDataToString({76}, 1, 0x1F600 - 76 + 65535), "\U0001F600");
    EXPECT_EQ(caesarDataToString({0}, 1, 0xD7FF) + caesarDataToString({0}, 1, 0xE000), "\uD7FF\uE000");

    const std::pair<std::int64_t, const char *> sizes[] = {{2, "AB"}, {0, "A"}, {-5, "A"}, {16, "ABC"}};
    for (const auto &[size, text] : sizes) EXPECT_EQ(caesarDataToString({76, 77, 78}, size, -11), text);
    EXPECT_EQ(caesarDataToString({}, 16, -11), "");

    for (const std::int64_t shift : {std::int64_t{255}, std::int64_t{-2}, std::int64_t{-200000},
                                     std::numeric_limits<std::int64_t>::max()})
        EXPECT_EXIT((void)caesarDataToData({1}, shift), KilledBySignal(SIGABRT), "^" + support::kSilentEnd)
            << shift;
    for (const std::int64_t shift : {0xD7FF, 0xDFFE, 0x10FFFF + 65535, -70000})
        EXPECT_EXIT((void)caesarDataToString({1}, 1, shift), KilledBySignal(SIGABRT),
                    "^" + support::kSilentEnd)
            << shift;
}

TEST(SceneCipher, PassesThePlainTextAndTheZerosBehindIt) {
    const struct {
        const char *text;
        Bytes plain;
        const char *why;
    } rows[] = {
        {"uhdTQ/tJ4+Y=", withZeros("a", 15), "padding is zeros, too"},
        {"FfOascdsq0E=", withZeros("A\x80\x42\xff", 10), "194 is left out"},
        {"this is no base64", withZeros("", 8), "no base64"},
        {"AnQiejVVk50hwA2kk78C4w==", withZeros("ABCDEFGHABCDEF\x09\x09", 8), "9 is no padding"},
        {"AnQiejVVk52xEl9a4zBGHQ==", withZeros("ABCDEFGH\1\2\3\4\5", 3 + 8), "3, others differ"},
        {"AnQiejVVk53nNWcYUJZiog==", withZeros("ABCDEFGHIJKLMN", 1 + 8), "0 is no padding"},
        // A whole block that ends in a 2, and one byte of a second.
        {"7HOTF7AZrHN4", withZeros("ABCDEFG\x02", 8), "no padding is looked for"},
    };
    for (const auto &row : rows) {
        Bytes out(100, 0xEE);
        out.resize(String_decrypt(row.text, out));
        EXPECT_EQ(out, row.plain) << row.why;
    }
    Bytes memory(12, 0xEE);
    EXPECT_EQ(String_decrypt("AnQiejVVk51lJRNe1CA2aA==", std::span(memory).first(10)), 24U);
    EXPECT_EQ(std::string(memory.begin(), memory.end()), "ABCDEFGHIJ\xEE\xEE") << "never beyond the buffer";
    EXPECT_EQ(String_encrypt(Bytes{'a', 'b', 'c'}, 1), "uhdTQ/tJ4+Y=");
    for (const std::int32_t length : {4, -1}) EXPECT_EQ(String_encrypt(Bytes{1, 2, 3}, length), std::nullopt);
}

}  // namespace
