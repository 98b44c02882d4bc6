#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "uvc/uvc_value.h"

namespace {

using Value = std::shared_ptr<UVCValue>;

/// A value of this type as its text says; null without a text.
Value valueOf(const char *type, const char *text) {
    if (text == nullptr) return nullptr;
    auto value = UVCValue::uvcValueWithType(UVCType::uvcTypeWithCString(type));
    EXPECT_TRUE(value->scanCString(text, 0)) << text;
    return value;
}

struct Scan {
    const char *type;
    const char *text;
    std::string result;  // as the value prints itself, "refused " in front; it was zero before
    const char *minimum = nullptr;
    const char *maximum = nullptr;
    const char *stepSize = nullptr;
    const char *defaultValue = nullptr;
};

constexpr char kPanTilt[] = "{S4 pan; S4 tilt}";

const Scan kNumbers[] = {
    {"{S2}", " \t12,", "12"},
    {"{U2}", "0x1e", "30"},
    {"{U2}", "12abc", "12"},
    {"{S2}", "-", "refused 0"},
    // Signed numbers are read at twice their width and saturate, others wrap.
    {"{S1}", "128", "127"},
    {"{S1}", "65535", "-1"},
    {"{U1}", "300", "44"},
    {"{U1}", "-1", "100", "0", "100"},
    {"{S2}", "-40000", "-32768"},
    {"{U2}", "40000", "40000", "0", "65535"},
    {"{S4}", "2147483648", "2147483647"},
    {"{S4}", "-99999999999", "-2147483648"},
    {"{U4}", "-1", "4294967295"},
    {"{S8}", "-99999999999999999999", "-9223372036854775808"},
    {"{U8}", "99999999999999999999", "9223372036854775807"},
    // Range, then steps from zero; negative numbers go towards it.
    {"{S4}", "-900", "-720", "-720", "720"},
    {"{S4}", "900", "720", "-720", "720"},
    {"{S4}", "15", "20", nullptr, nullptr, "10"},
    {"{S4}", "14", "10", nullptr, nullptr, "10"},
    {"{U2}", "7", "10", nullptr, nullptr, "5"},
    {"{U2}", "6", "5", nullptr, nullptr, "5"},
    {"{S4}", "-19", "-10", nullptr, nullptr, "10"},
    {"{S4}", "5", "6", nullptr, nullptr, "2"},
    {"{S4}", "6", "10", "5", "100", "10"},
    {"{S4}", "500", "100", "-95", "95", "10"},
    {"{S1}", "127", "127", nullptr, nullptr, "10"},
    {"{U1}", "255", "4", nullptr, nullptr, "10"},
    {"{S4}", "9223372036854775807", "2147483647", nullptr, nullptr, "10"},
    {"{S8}", "9223372036854775807", "-9223372036854775806", nullptr, nullptr, "10"},
    // Fractions of the range
    {"{U2}", "0.5", "500", "0", "1000"},
    {"{U2}", "0.5", "501", "0", "1000", "3"},
    {"{S2}", ".5", "-3", "-5", "0"},
    {"{U2}", "12.5", "1000", "0", "1000"},
    {"{S2}", "-0.5", "-100", "-100", "1000"},
    {"{U2}", "5e-1", "500", "0", "1000"},
    {"{U2}", ".", "refused 0", "0", "1000"},
    {"{U2}", "0.5", "refused 0", nullptr, "1000"},
    {"{U2}", "0.5", "refused 0", "0", nullptr},
    {"{S4}", "1.0", "2147483647", "-2147483648", "2147483647"},
    {"{U8}", "1.0", "18446744073709551615", "0", "-1"},
    {"{S1}", "1.0", "-126", "0", "127", "10"},
    // Words
    {"{S4}", "DEFAULT", "-7", nullptr, nullptr, nullptr, "-7"},
    {"{U8}", " minimum,", "5", "5", nullptr},
    {"{S2}", "MaximumX", "-6", nullptr, "-6"},
    {"{S4}", "default", "refused 0", "1", "2", "3"},
    {"{B}", "True", "true"},
    {"{B}", "0x1", "false"},
    {"{B}", " 0", "false"},
    {"{B}", "5", "true", nullptr, nullptr, "1"},
    {"{B}", "on", "refused false"},
};

const Scan kRecords[] = {
    // In order
    {kPanTilt, " { 10 , 12", "{pan=10,tilt=12}"},
    {kPanTilt, "{10,12,nonsense}", "{pan=10,tilt=12}"},
    {kPanTilt, "{10}", "refused {pan=10,tilt=0}"},
    {kPanTilt, "{10,x}", "refused {pan=10,tilt=0}"},
    {kPanTilt, "{0.25,-999}", "{pan=-50,tilt=-50}", "{-100,-50}", "{100,50}", "{10,1}"},
    {kPanTilt, "{default,maximum}", "{pan=5,tilt=50}", "{-100,-50}", "{100,50}", nullptr, "{5,6}"},
    {"{B yes; U1 no; B n; B f; B t}", "{yes,7,no,false,t}", "{yes=true,no=7,n=false,f=false,t=true}"},
    {"{B a; S8 b; U2 c; S1 d}", "{true,-2,0x1234,-3}", "{a=true,b=-2,c=4660,d=-3}"},
    // By name
    {kPanTilt, "{TILT=5, Pan=6}", "{pan=6,tilt=5}"},
    {"{U1 pan; U1 pal}", "{pal=2,pan=1}", "{pan=1,pal=2}"},
    {kPanTilt, "{pan=1,tilt=2,pan=3}", "{pan=3,tilt=2}"},
    {kPanTilt, "{pan=1,tilt=2,pan=x}", "{pan=1,tilt=2}"},
    {kPanTilt, "{pan=1,Zoom=2,tilt=3}", "refused {pan=1,tilt=0}"},
    {kPanTilt, "{pan=1,tilt", "refused {pan=1,tilt=0}"},
    {kPanTilt, "{tilt=0.5,pan=minimum}", "{pan=-100,tilt=0}", "{-100,-50}", "{100,50}"},
    // Without a brace: a word for the whole record, or the value of the only field
    {kPanTilt, " Default", "{pan=5,tilt=6}", nullptr, nullptr, nullptr, "{5,6}"},
    {kPanTilt, "10", "refused {pan=0,tilt=0}"},
    {"{U2}", "{150}", "150"},
    {"{U2}", "{=150}", "150"},
};

TEST(ValueString, IsScannedAndPrintedAgain) {
    const auto check = [](const Scan &row) {
        const Value value = UVCValue::uvcValueWithType(UVCType::uvcTypeWithCString(row.type));
        const bool accepted = value->scanCString(
            row.text, 0, valueOf(row.type, row.minimum).get(), valueOf(row.type, row.maximum).get(),
            valueOf(row.type, row.stepSize).get(), valueOf(row.type, row.defaultValue).get());
        EXPECT_EQ((accepted ? "" : "refused ") + value->stringValue().value_or("nothing"), row.result)
            << row.type << row.text;
    };
    for (const Scan &row : kNumbers) check(row);
    for (const Scan &row : kRecords) check(row);
    EXPECT_FALSE(valueOf("{U2}", "0")->scanCString(nullptr, 0));
}

struct Told {
    const char *type;
    const char *text;
    bool hasRange;
    std::string lines;  // all that is told, I for an information and W for a warning
};

const Told kTold[] = {
    {"{U2}", "default", false,
     "W No default value provided by this control\nI Default value requested\n"
     "W Default value requested, none provided by control\n"},
    {"{U2}", "maximum", true,
     "I Copying maximum value provided by this control\nI Maximum value requested\n"
     "I Successfully scanned all fields for this type\n"},
    {"{U2}", "%s", false, "I Defaulting to integer value at '%s'\nW Unable to scan integer value at '%s'\n"},
    {"{U2}", "0.5", false,
     "I Floating-point value detected at '0.5'\n"
     "W No value range provided by control, floating-point input not available\n"},
    {"{U2}", "e5", true,
     "I Floating-point value detected at 'e5'\nW Unable to scan floating-point value at 'e5'\n"},
    {"{B}", "on", false,
     "W Invalid boolean value at 'on'\nI Defaulting to integer value at 'on'\n"
     "W Unable to scan integer value at 'on'\n"},
    {kPanTilt, "{1, 2}", false,
     "I Using in-order field assignments\n"
     "I Processing substring '1, 2}'\nI Defaulting to integer value at '1, 2}'\n"
     "I Processing substring '2}'\nI Defaulting to integer value at '2}'\n"
     "I Successfully scanned all fields for this type\n"},
    {kPanTilt, "{tilt=5}", false,
     "I Using named-value field assignments\nI Processing substring 'tilt=5}'\n"
     "I Defaulting to integer value at '5}'\nW 1 named field was not provided\n"},
    {kPanTilt, "{pan=x}", false,
     "I Using named-value field assignments\nI Processing substring 'pan=x}'\n"
     "I Defaulting to integer value at 'x}'\nW Unable to scan integer value at 'x}'\n"
     "W 2 named fields were not provided\n"},
    {kPanTilt, "{Pan =1}", false,
     "I Using named-value field assignments\nI Processing substring 'Pan =1}'\n"
     "W Field name 'pan ' not defined for this type\n"},
    {kPanTilt, "10", false, ""},
};

TEST(ValueString, TellsWhatTheFlagsAskFor) {
    for (const Told &row : kTold) {
        const Value value = UVCValue::uvcValueWithType(UVCType::uvcTypeWithCString(row.type));
        const UVCValue *const limit = row.hasRange ? value.get() : nullptr;
        for (const unsigned flags : {0u, uvc::kShowWarnings, uvc::kShowInformation, 3u}) {
            std::string expected;
            for (std::size_t at = 0, end = 0; at < row.lines.size(); at = end) {
                end = row.lines.find('\n', at) + 1;
                const bool isWarning = row.lines[at] == 'W';
                if ((flags & (isWarning ? uvc::kShowWarnings : uvc::kShowInformation)) != 0)
                    expected += (isWarning ? "WARNING:" : "INFO:") + row.lines.substr(at + 1, end - at - 1);
            }
            testing::internal::CaptureStderr();
            static_cast<void>(value->scanCString(row.text, flags, limit, limit));
            EXPECT_EQ(testing::internal::GetCapturedStderr(), expected) << row.type << row.text << flags;
        }
    }
}

TEST(Value, FieldPointersAreForLaterFields) {
    const auto value = valueOf("{S4 pan; S4 tilt}", "{1,2}");
    const auto start = reinterpret_cast<std::uintptr_t>(value->valuePtr());
    EXPECT_EQ(value->pointerToFieldAtIndex(0), nullptr);
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
    EXPECT_EQ(text.substr(text.find(' ')),
              " { type: " + value->valueType()->description() + "; bytes: [2c:01] }");
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
