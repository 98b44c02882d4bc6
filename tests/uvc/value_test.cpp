#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "uvc/uvc_value.h"

namespace {

std::shared_ptr<UVCValue> valueOf(const char *description, const char *text = nullptr) {
    auto value = UVCValue::uvcValueWithType(UVCType::uvcTypeWithCString(description));
    EXPECT_TRUE(text == nullptr || value->scanCString(text, 0)) << text;
    return value;
}

TEST(Value, FieldPointersAreForLaterFields) {
    const auto value = valueOf("{S4 pan; S4 tilt}");
    const auto start = reinterpret_cast<std::uintptr_t>(value->valuePtr());
    EXPECT_EQ(value->pointerToFieldAtIndex(0), nullptr);
    EXPECT_EQ(value->pointerToFieldWithName("PAN"), nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(value->pointerToFieldAtIndex(1)), start + 4);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(value->pointerToFieldWithName("Tilt")), start + 4);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(value->pointerToFieldWithName("zoom")), start - 1);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(value->pointerToFieldAtIndex(3)), start - 1);
}

TEST(Value, SwapFlagFollowsTheCallsAndBytesComeBack) {
    const auto value = valueOf("{U2}", "300");
    value->byteSwapUSBToHostEndian();
    EXPECT_FALSE(value->isSwappedToUSBEndian());
    value->byteSwapHostToUSBEndian();
    value->byteSwapHostToUSBEndian();
    EXPECT_TRUE(value->isSwappedToUSBEndian());
    const auto *wire = static_cast<const std::uint8_t *>(value->valuePtr());
    EXPECT_EQ(wire[0], 0x2C);
    EXPECT_EQ(wire[1], 0x01);
    value->byteSwapUSBToHostEndian();
    EXPECT_EQ(value->stringValue(), "300");
}

TEST(Value, CopiesOnlyBetweenEqualTypesAndKeepsItsFlag) {
    const auto from = valueOf("{S1 a; S1 b}", "{1,2}");
    from->byteSwapHostToUSBEndian();
    const auto to = valueOf("{S1 pan; S1 tilt}");
    to->copyValue(from.get());
    EXPECT_EQ(to->stringValue(), "{pan=1,tilt=2}");
    EXPECT_FALSE(to->isSwappedToUSBEndian());

    const auto other = valueOf("{U1 pan; U1 tilt}", "{7,8}");
    to->copyValue(other.get());
    to->copyValue(nullptr);
    EXPECT_EQ(to->stringValue(), "{pan=1,tilt=2}");
}

TEST(Value, EqualByTypeAndBytes) {
    const auto value = valueOf("{S4 pan; S4 tilt}", "{1,2}");
    EXPECT_TRUE(value->isEqual(valueOf("{S4 a; S4 b}", "{1,2}").get()));
    EXPECT_FALSE(value->isEqual(valueOf("{S4 a; S4 b}", "{1,3}").get()));
    EXPECT_FALSE(value->isEqual(valueOf("{U4 a; U4 b}", "{1,2}").get()));
    EXPECT_FALSE(value->isEqual(valueOf("{S8 a}").get()));
    EXPECT_FALSE(value->isEqual(nullptr));
}

TEST(Value, ScansWithOtherValuesAsLimits) {
    const auto limit = [](const char *text) { return valueOf("{U2}", text); };
    const auto value = valueOf("{U2}");
    EXPECT_TRUE(value->scanCString("0.26", 0, limit("10").get(), limit("1000").get(), limit("100").get()));
    EXPECT_EQ(value->stringValue(), "300");
    EXPECT_TRUE(value->scanCString("default", 0, nullptr, nullptr, nullptr, limit("100").get()));
    EXPECT_EQ(value->stringValue(), "100");

    // A shorter record would be read past its end.
    const auto shorter = valueOf("{U1}", "5");
    EXPECT_FALSE(value->scanCString("default", 0, nullptr, nullptr, nullptr, shorter.get()));
    EXPECT_TRUE(value->scanCString("2000", 0, shorter.get(), shorter.get()));
    EXPECT_EQ(value->stringValue(), "2000");
}

TEST(Value, DescriptionShowsTypeAndBytes) {
    const auto value = valueOf("{U1 low; U1 high}", "{44,1}");
    const std::string text = value->description();
    EXPECT_EQ(text.find("UVCValue@0x"), 0u);
    const std::string tail = " { type: " + value->valueType()->description() + "; bytes: [2c:01] }";
    ASSERT_GT(text.size(), tail.size());
    EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
}

}  // namespace
