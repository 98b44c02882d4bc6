#include "scenes/scene_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <sstream>

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();

std::optional<std::vector<ManualPreset>> parsed(std::string_view json) {
    std::string error;
    auto presets = scenes::presetsFromJson(json, error);
    EXPECT_EQ(presets.has_value(), error.empty()) << json;
    EXPECT_THAT(error, Not(HasSubstr("\n")));
    return presets;
}

std::string sceneWithPan(const std::string &pan) {
    return R"([{"Zoom":0,"Tilt":0,"Name":"n","HID_Path":"","DS_Path":"","HID_SerialNumber":"","Pan":)" + pan +
           "}]";
}

std::string sceneWithName(const std::string &literal) {
    return R"([{"Name":)" + literal +
           R"(,"DS_Path":"d","HID_Path":"h","HID_SerialNumber":"s","Tilt":1,"Pan":2,"Zoom":3}])";
}

TEST(SceneJson, WritesCompactTextInTheOrderOfTheFields) {
    std::string error;
    EXPECT_EQ(scenes::jsonFromPresets({}, error), "[]");
    const ManualPreset preset{"Ñ \"q\" \\ / \n\x1f\x7f", "/dev/x", "h", "s", kMin, kMax, -7};
    EXPECT_EQ(scenes::jsonFromPresets({preset}, error),
              R"([{"Name":"Ñ \"q\" \\ \/ \n\u001f)"
              "\x7f"
              R"(","DS_Path":"\/dev\/x","HID_Path":"h","HID_SerialNumber":"s",)"
              R"("Tilt":-9223372036854775808,"Pan":9223372036854775807,"Zoom":-7}])");
    EXPECT_EQ(error, "");
}

TEST(SceneJson, TakesEveryWayToWriteAWholeNumber) {
    const std::pair<const char *, std::int64_t> rows[] = {
        {"0", 0},
        {"-0", 0},
        {"5.0", 5},
        {"1e3", 1000},
        {"10e-1", 1},
        {"-2.50e1", -25},
        {"9223372036854775807", kMax},
        {"9007199254740993", 9007199254740993},
        {"9007199254740993.0", 9007199254740992},
        {"-9223372036854775808", kMin},
        {"4611686018427387904.0", std::int64_t{1} << 62},
    };
    for (const auto &[text, value] : rows) {
        const auto presets = parsed(sceneWithPan(text));
        ASSERT_TRUE(presets) << text;
        EXPECT_EQ(presets->at(0).Pan, value) << text;
    }
}

TEST(SceneJson, RefusesNumbersThatAreNoWholeSixtyFourBits) {
    std::istringstream numbers(
        R"(5.5 1e-1 1e19 -1e19 1e400 9223372036854775807.0 -9223372036854775808.0 9223372036854775808 -9223372036854775809 18446744073709551616 NaN "5" true null "" {})");
    for (std::string text; numbers >> text;) EXPECT_FALSE(parsed(sceneWithPan(text))) << text;
}

TEST(SceneJson, RequiresTheSevenKeysAndNoOthers) {
    EXPECT_EQ(parsed(" \n[ ] "), std::vector<ManualPreset>{});
    const ManualPreset expected{"n", "d", "h", "s", 1, 2, 3};
    EXPECT_EQ(parsed("\xEF\xBB\xBF" + sceneWithName("\"n\"")), std::vector{expected}) << "byte order mark";
    EXPECT_EQ(parsed(sceneWithName(R"("n","Extra":{"a":{"b":false}},"name":7)")), std::vector{expected});

    const std::string whole = sceneWithName("\"n\"");
    for (const char *key : {"Name", "DS_Path", "HID_Path", "HID_SerialNumber", "Tilt", "Pan", "Zoom"}) {
        std::string renamed = whole;
        renamed.replace(renamed.find("\"" + std::string(key) + "\"") + 1, 1, "x");
        EXPECT_FALSE(parsed(renamed)) << renamed;
    }
}

TEST(SceneJson, RefusesOtherShapesAndDamagedTexts) {
    for (const char *json : {"", "]", "{}", "7", "null", "[[]]", "[1]", "[{}]", "[{}", "[] x"})
        EXPECT_FALSE(parsed(json)) << json;
    for (const char *literal : {"7", "null", "{}", "\"\t\"", R"("\ud83d")", "\"\xed\xa0\x80\"", "\"n"})
        EXPECT_FALSE(parsed(sceneWithName(literal))) << literal;
    // Deep nesting must end in a refusal, not in an exhausted stack.
    std::string deep = "[";
    for (int level = 0; level < 200000; ++level) deep += R"({"a":)";
    EXPECT_FALSE(parsed(deep + "]"));
}

TEST(SceneNulls, BecomeTwoQuotesBareOutsideAndEscapedInsideStrings) {
    const std::pair<const char *, const char *> rows[] = {
        {R"([{"a":null,"b":"null"}])", R"([{"a":"","b":"\"\""}])"},
        {R"("nullnull" null)", R"("\"\"\"\"" "")"},
        {R"("\"null\\" null)", R"("\"\"\"\\" "")"},
        {R"("a\null")", R"("a\null")"},
        {R"("nul" nUll NULL)", R"("nul" nUll NULL)"},
        {R"(null)", R"("")"},
        {R"("\)", R"("\)"},
        {"", ""},
    };
    for (const auto &[json, expected] : rows) EXPECT_EQ(scenes::withoutNulls(json), expected);
}

}  // namespace
