#include "scenes/scene_layers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <limits>

#include "scenes/utf8.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::KilledBySignal;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

/// What String_decrypt gives for `text` when there is room for everything.
Bytes decrypted(std::string_view text) {
    Bytes out(text.size() + 16, 0xEE);
    out.resize(String_decrypt(text, out));
    return out;
}

Bytes withZeros(std::string_view text, std::size_t zeros) {
    Bytes bytes = bytesOf(text);
    bytes.resize(bytes.size() + zeros, 0);
    return bytes;
}

TEST(SceneBase64, SkipsWhatIsNoLetterAndRefusesMisplacedPadding) {
    for (const char *text : {"=", "==", "===", "Q", "QQ", "QQ=", "QUI", "QUJD=", "QUJD==", "QUJDRA",
                             "QQ==QUJD", "QQ=Q", "=QUJ", "QUJDRA==x", "A-_B"}) {
        EXPECT_FALSE(scenes::base64DecodeIgnoringUnknown(text)) << text;
    }
    const std::pair<std::string_view, std::string_view> readable[] = {{"", ""},
                                                                      {" \n\t", ""},
                                                                      {"\uFFF4\uFFF4", ""},
                                                                      {"[]", ""},
                                                                      {"====", ""},
                                                                      {"Q===", ""},
                                                                      {"QUJD====", "ABC"},
                                                                      {"QR==", "A"},
                                                                      {"QUJDRA==\n", "ABCD"},
                                                                      {"Q U-J_D\r\n", "ABC"},
                                                                      {"QUJDRA=\x80=\xff", "ABCD"},
                                                                      {"+/+/", "\xfb\xff\xbf"}};
    for (const auto &[text, bytes] : readable) {
        EXPECT_EQ(scenes::base64DecodeIgnoringUnknown(text), bytesOf(bytes)) << text;
    }
}

TEST(SceneShift, StaysInBytesGoingOut) {
    EXPECT_THAT(caesarDataToData({43, 122, 0, 244}, 11), ElementsAre(54, 133, 11, 255));
    EXPECT_THAT(caesarDataToData({}, 11), IsEmpty());
    EXPECT_THAT(caesarDataToData({20}, -11), ElementsAre(9));
    // 65535 codes further is the same code again.
    EXPECT_THAT(caesarDataToData({7}, 65535), ElementsAre(7));
    EXPECT_THAT(caesarDataToData({0}, 65535 + 3), ElementsAre(3));
}

TEST(SceneShiftDeathTest, StopsAtWhatIsNoByte) {
    EXPECT_EXIT((void)caesarDataToData({244, 245}, 11), KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT((void)caesarDataToData({10}, -11), KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT((void)caesarDataToData({1}, -200000), KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT((void)caesarDataToData({1}, std::numeric_limits<std::int64_t>::max()),
                KilledBySignal(SIGABRT), "^$");
}

TEST(SceneShift, GivesCharactersComingIn) {
    EXPECT_EQ(caesarDataToString({76, 11, 138, 139, 255}, 5, -11), std::string("A\0\x7f\u0080\u00f4", 7));
    // Below the shift it wraps to codes that base64 decoding skips.
    EXPECT_EQ(caesarDataToString({0, 10}, 2, -11), "\uFFF4\uFFFE");
    EXPECT_EQ(caesarDataToString({76}, 1, 0x1F600 - 76 + 65535), "\U0001F600");
}

TEST(SceneShift, TakesTheFirstByteAlwaysAndNoneBeyondTheEnd) {
    const Bytes abc = {76, 77, 78};
    EXPECT_EQ(caesarDataToString(abc, 2, -11), "AB");
    EXPECT_EQ(caesarDataToString(abc, 0, -11), "A");
    EXPECT_EQ(caesarDataToString(abc, -5, -11), "A");
    EXPECT_EQ(caesarDataToString(abc, 16, -11), "ABC");
    EXPECT_EQ(caesarDataToString({}, 16, -11), "");
}

TEST(SceneShiftDeathTest, StopsAtWhatIsNoCharacter) {
    EXPECT_EXIT((void)caesarDataToString({0}, 1, 0xD800), KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT((void)caesarDataToString({0}, 1, 0xDFFF), KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT((void)caesarDataToString({1}, 1, 0x10FFFF + 65535), KilledBySignal(SIGABRT), "^$");
    EXPECT_EXIT((void)caesarDataToString({1}, 1, -70000), KilledBySignal(SIGABRT), "^$");
    EXPECT_EQ(caesarDataToString({0}, 1, 0xD7FF), "\uD7FF");
    EXPECT_EQ(caesarDataToString({0}, 1, 0xE000), "\uE000");
}

TEST(SceneCipher, AgreesWithTheCommandLineTool) {
    EXPECT_EQ(String_encrypt({}, 0), "pyNW5sF18NM=");
    EXPECT_EQ(String_encrypt(bytesOf("a"), 1), "uhdTQ/tJ4+Y=");
    EXPECT_EQ(String_encrypt(bytesOf("12345678"), 8), "yxG7TB9fCQenI1bmwXXw0w==");
    // Made from the expanded bytes 41 C2 80 42 C2 FF.
    EXPECT_EQ(String_encrypt(bytesOf("A\x80\x42\xff"), 4), "FfOascdsq0E=");

    EXPECT_EQ(String_encrypt(bytesOf("abc"), 1), "uhdTQ/tJ4+Y=");
    EXPECT_EQ(String_encrypt(bytesOf("abc"), 4), std::nullopt);
    EXPECT_EQ(String_encrypt(bytesOf("abc"), -1), std::nullopt);
}

TEST(SceneDecipher, PassesThePlainTextAndTheZerosBehindIt) {
    EXPECT_EQ(decrypted("uhdTQ/tJ4+Y="), withZeros("a", 15));
    EXPECT_EQ(decrypted("yxG7TB9fCQenI1bmwXXw0w==\n"), withZeros("12345678", 16));
    EXPECT_EQ(decrypted("FfOascdsq0E="), withZeros("A\x80\x42\xff", 10));
    EXPECT_EQ(decrypted(""), withZeros("", 8));
    EXPECT_EQ(decrypted("this is no base64"), withZeros("", 8));
}

TEST(SceneDecipher, LetsTheLastByteAloneSayHowMuchIsPadding) {
    EXPECT_EQ(decrypted("AnQiejVVk50hwA2kk78C4w=="), withZeros("ABCDEFGHABCDEF\x09\x09", 8))
        << "9 is no padding";
    EXPECT_EQ(decrypted("AnQiejVVk52xEl9a4zBGHQ=="), withZeros("ABCDEFGH\1\2\3\4\5", 3 + 8))
        << "3, others differ";
    EXPECT_EQ(decrypted("AnQiejVVk51lJRNe1CA2aA=="), withZeros("ABCDEFGHIJKLMNOP", 8)) << "none at all";
    EXPECT_EQ(decrypted("AnQiejVVk53nNWcYUJZiog=="), withZeros("ABCDEFGHIJKLMN", 1 + 8)) << "0 is no padding";

    // A whole block that ends in a 2, and one byte of a second: no padding is looked for.
    EXPECT_EQ(decrypted("7HOTF7AZrHN4"), withZeros("ABCDEFG\x02", 8));
    EXPECT_EQ(decrypted("AnQi"), withZeros("", 8));
}

TEST(SceneDecipher, CountsOnButNeverWritesBeyondTheBuffer) {
    std::array<std::uint8_t, 12> memory{};
    memory.fill(0xEE);
    EXPECT_EQ(String_decrypt("AnQiejVVk51lJRNe1CA2aA==", std::span(memory).first(10)), 24U);
    EXPECT_EQ(std::string(memory.begin(), memory.begin() + 10), "ABCDEFGHIJ");
    EXPECT_EQ(memory[10], 0xEE);
    EXPECT_EQ(memory[11], 0xEE);
}

TEST(SceneText, RepairsEachMaximalSubpartOnce) {
    // Rows of the Unicode Standard's own tables on substitution (3-8 to 3-11), then single cases.
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41", "????????A"},
        {"\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41", "????????A"},
        {"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", "?????A??B"},
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", "????A"},
        {"\xE2\x82", "?"},
        {"\xF0\x9F\x8E", "?"},
        {"\xC3", "?"},
        {"a\xF5\x80z", "a??z"},
        {"Ñ€\U0001F3A5\x7f", "Ñ€\U0001F3A5\x7f"},
    };
    for (const auto &[bytes, pattern] : rows) {
        std::string expected;
        for (const char character : pattern)
            expected += character == '?' ? "\uFFFD" : std::string(1, character);
        EXPECT_EQ(scenes::repairUtf8(bytes), expected);
        EXPECT_EQ(scenes::isValidUtf8(bytes), bytes == expected) << expected;
    }
    EXPECT_TRUE(scenes::isValidUtf8("\uD7FF\uE000\U0010FFFF\u0080\u0800\U00010000"));
}

}  // namespace
