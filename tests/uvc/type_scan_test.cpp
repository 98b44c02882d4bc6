#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "uvc/uvc_type.h"

namespace {

using Record = std::array<std::int32_t, 2>;

constexpr Record kUntouched = {111, 222};
constexpr Record kMinimum = {-100, -50};
constexpr Record kMaximum = {100, 50};
constexpr Record kStep = {10, 1};
constexpr Record kDefault = {5, 6};

std::shared_ptr<const UVCType> panTilt() {
    return UVCType::uvcTypeWithCString("{S4 pan; S4 tilt}");
}

struct RecordText {
    const char *row;
    const char *text;
    bool hasLimits;
    bool accepted;
    Record record;
    std::string warnings;
};

const RecordText kScans[] = {
    // In order
    {"Both", "{10,12}", false, true, {10, 12}, ""},
    {"BlanksAnywhere", "  { 10 , 12", false, true, {10, 12}, ""},
    {"NoClosingBrace", "{10,12", false, true, {10, 12}, ""},
    {"ExtraValues", "{10,12,nonsense}", false, true, {10, 12}, ""},
    {"TooFewAtTheEnd", "{10,", false, false, {10, 222}, ""},
    {"Nothing", "{}", false, false, kUntouched, "WARNING: Unable to scan integer value at '}'\n"},
    {"EachFieldHasItsOwnLimits", "{999,-999}", true, true, {100, -50}, ""},
    {"EachFieldHasItsOwnStep", "{14,14}", true, true, {10, 14}, ""},
    {"EachFieldHasItsOwnWords", "{default,maximum}", true, true, {5, 50}, ""},
    {"Fractions", "{0.25, 1.0}", true, true, {-50, 50}, ""},
    // Named
    {"AnyOrderAnyCase", "{TILT=5, Pan=6}", false, true, {6, 5}, ""},
    {"LaterWins", "{pan=1,tilt=2,pan=3}", false, true, {3, 2}, ""},
    {"FaultBehindAllFields",
     "{pan=1,tilt=2,pan=x}",
     false,
     true,
     {1, 2},
     "WARNING: Unable to scan integer value at 'x}'\n"},
    {"OneMissing", "{tilt=5}", false, false, {111, 5}, "WARNING: 1 named field was not provided\n"},
    {"TwoMissing", "{pan=x}", false, false, kUntouched,
     "WARNING: Unable to scan integer value at 'x}'\nWARNING: 2 named fields were not provided\n"},
    {"UnknownName",
     "{pan=1,Zoom=2}",
     false,
     false,
     {1, 222},
     "WARNING: Field name 'zoom' not defined for this type\n"},
    {"BlankBelongsToTheName", "{pan =1}", false, false, kUntouched,
     "WARNING: Field name 'pan ' not defined for this type\n"},
    {"NameWithoutValue",
     "{pan=1,tilt",
     false,
     false,
     {1, 222},
     "WARNING: Unable to scan integer value at ''\nWARNING: 1 named field was not provided\n"},
    {"OwnLimits", "{tilt=0.5,pan=minimum}", true, true, {-100, 0}, ""},
    // Bare
    {"Default", " Default", true, true, kDefault, ""},
    {"Minimum", "MINIMUM", true, true, kMinimum, ""},
    {"Maximum", "maximum", true, true, kMaximum, ""},
    {"DefaultAbsent", "default", false, false, kUntouched,
     "WARNING: No default value provided by this control\n"},
    {"MinimumAbsent", "minimum", false, false, kUntouched,
     "WARNING: No minimum value provided by this control\n"},
    {"MaximumAbsent", "maximum", false, false, kUntouched,
     "WARNING: No maximum value provided by this control\n"},
    {"NumberForTwoFields", "10", false, false, kUntouched, ""},
    {"Empty", "", false, false, kUntouched, ""},
};

TEST(RecordScan, AssignsFieldsAndWarns) {
    for (const RecordText &row : kScans) {
        SCOPED_TRACE(row.row);
        Record record = kUntouched;
        const auto limit = [&row](const Record &limits) { return row.hasLimits ? &limits : nullptr; };
        testing::internal::CaptureStderr();
        EXPECT_EQ(panTilt()->scanCString(row.text, &record, uvc::kShowWarnings, limit(kMinimum),
                                         limit(kMaximum), limit(kStep), limit(kDefault)),
                  row.accepted);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.warnings);
        EXPECT_EQ(record, row.record);
    }
}

TEST(RecordScanInformation, TellsEachStep) {
    Record record{};
    testing::internal::CaptureStderr();
    EXPECT_TRUE(panTilt()->scanCString("{1, 2}", &record, uvc::kShowInformation));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "INFO: Using in-order field assignments\n"
              "INFO: Processing substring '1, 2}'\nINFO: Defaulting to integer value at '1, 2}'\n"
              "INFO: Processing substring '2}'\nINFO: Defaulting to integer value at '2}'\n"
              "INFO: Successfully scanned all fields for this type\n");

    testing::internal::CaptureStderr();
    EXPECT_TRUE(panTilt()->scanCString("maximum", &record, uvc::kShowInformation, &kMinimum, &kMaximum));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "INFO: Copying maximum value provided by this control\n"
              "INFO: Successfully scanned all fields for this type\n");

    testing::internal::CaptureStderr();
    EXPECT_FALSE(panTilt()->scanCString("{pan=1}", &record, uvc::kShowInformation));
    EXPECT_EQ(testing::internal::GetCapturedStderr().find("INFO: Using named-value field assignments\n"), 0u);
}

TEST(OneFieldScan, TakesBareAndBracedValues) {
    const auto type = UVCType::uvcTypeWithCString("{U2}");
    const auto scanned = [&type](const char *text) {
        std::uint16_t value = 0;
        const std::uint16_t minimum = 3;
        const std::uint16_t maximum = 1000;
        return type->scanCString(text, &value, 0, &minimum, &maximum) ? static_cast<int>(value) : -1;
    };
    EXPECT_EQ(scanned("150"), 150);
    EXPECT_EQ(scanned("{150}"), 150);
    EXPECT_EQ(scanned("{=150}"), 150);  // the field's empty name
    EXPECT_EQ(scanned("MAXIMUM"), 1000);
    EXPECT_EQ(scanned("maximum please"), 1000);
    EXPECT_EQ(scanned("12abc"), 12);
    EXPECT_EQ(scanned(""), -1);
    EXPECT_EQ(scanned(nullptr), -1);
}

TEST(OneFieldScan, KeywordIsReadForTheRecordAndThenForTheField) {
    std::uint16_t value = 9;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(UVCType::uvcTypeWithCString("{U2}")->scanCString("default", &value, 3));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "WARNING: No default value provided by this control\nINFO: Default value requested\n"
              "WARNING: Default value requested, none provided by control\n");
    EXPECT_EQ(value, 9);
}

TEST(RecordScanLayout, FieldsAreScannedAtOddOffsets) {
    const auto type = UVCType::uvcTypeWithCString("{B a; S8 b; U2 c}");
    std::array<std::uint8_t, 12> buffer{};
    buffer[11] = 0x5A;
    EXPECT_TRUE(type->scanCString("{true,-2,0x1234}", buffer.data(), 0));
    type->byteSwapHostToUSBEndian(buffer.data());
    EXPECT_EQ(buffer, (std::array<std::uint8_t, 12>{1, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x34,
                                                    0x12, 0x5A}));
}

}  // namespace
