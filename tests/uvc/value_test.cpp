#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "uvc/uvc_value.h"

namespace {

std::shared_ptr<UVCValue> valueOf(const char *description, const char *text) {
    auto value = UVCValue::uvcValueWithType(UVCType::uvcTypeWithCString(description));
    EXPECT_TRUE(value->scanCString(text, 0)) << text;
    return value;
}

TEST(Value, FieldPointersAreForLaterFields) {
    const auto value = valueOf("{S4 pan; S4 tilt}", "{1,2}");
    const auto start = reinterpret_cast<std::uintptr_t>(value->valuePtr());
    EXPECT_EQ(value->pointerToFieldWithName("PAN"), nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(value->pointerToFieldAtIndex(1)), start + 4);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(value->pointerToFieldWithName("Tilt")), start + 4);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(value->pointerToFieldWithName("zoom")), start - 1);
}

TEST(Value, SwapsOnceToTheWiresOrderAndShowsItsBytes) {
    const auto value = valueOf("{U2}", "300");
    value->byteSwapUSBToHostEndian();
    EXPECT_FALSE(value->isSwappedToUSBEndian());
    value->byteSwapHostToUSBEndian();
    value->byteSwapHostToUSBEndian();
    EXPECT_TRUE(value->isSwappedToUSBEndian());
    const std::string text = value->description();
    EXPECT_EQ(text.find("UVCValue@0x"), 0u);
    const std::string tail = " { type: " + value->valueType()->description() + "; bytes: [2c:01] }";
    EXPECT_EQ(text.substr(text.find(' ')), tail);
    value->byteSwapUSBToHostEndian();
    EXPECT_EQ(value->stringValue(), "300");
}

TEST(Value, IsCopiedFromAndEqualToAndLimitedByValuesOfItsTypeOnly) {
    const auto value = valueOf("{S1 pan; S1 tilt}", "{9,9}");
    const auto same = valueOf("{S1 a; S1 b}", "{1,2}");
    const auto other = valueOf("{U1 pan; U1 tilt}", "{7,8}");
    same->byteSwapHostToUSBEndian();
    EXPECT_FALSE(value->isEqual(same.get()));
    value->copyValue(same.get());
    value->copyValue(other.get());
    value->copyValue(nullptr);
    EXPECT_EQ(value->stringValue(), "{pan=1,tilt=2}");
    EXPECT_FALSE(value->isSwappedToUSBEndian());
    EXPECT_TRUE(value->isEqual(same.get()));
    EXPECT_FALSE(value->isEqual(valueOf("{U1 a; U1 b}", "{1,2}").get()));
    EXPECT_FALSE(value->isEqual(nullptr));

    // A shorter record would be read past its end.
    const auto shorter = valueOf("{S1}", "5");
    EXPECT_FALSE(value->scanCString("default", 0, nullptr, nullptr, nullptr, shorter.get()));
    EXPECT_TRUE(value->scanCString("{20,20}", 0, shorter.get(), shorter.get()));
    EXPECT_EQ(value->stringValue(), "{pan=20,tilt=20}");
}

}  // namespace
