#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "uvc/uvc_component_scan.h"
#include "uvc/uvc_type.h"

namespace {

constexpr unsigned kAll = uvc::kShowWarnings | uvc::kShowInformation;

/// A range, step and default as the numbers of a field; absent where nothing.
struct Limits {
    std::optional<std::int64_t> minimum = std::nullopt;
    std::optional<std::int64_t> maximum = std::nullopt;
    std::optional<std::int64_t> stepSize = std::nullopt;
    std::optional<std::int64_t> defaultValue = std::nullopt;
};

struct Scanned {
    const char *row;
    std::uint32_t code;
    std::string text;
    Limits limits;
    std::optional<std::size_t> consumed;  // nothing: refused
    std::string value;                    // as printed; ignored when refused
};

constexpr std::uint32_t B = 1, S1 = 2, U1 = 3, S2 = 4, U2 = 5, S4 = 6, U4 = 7, S8 = 8, U8 = 9;
constexpr std::nullopt_t none = std::nullopt;
constexpr std::int64_t kS4Min = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kS4Max = std::numeric_limits<std::int32_t>::max();

const Scanned kScans[] = {
    // Integers
    {"Blanks", S2, " \t12,", {}, 4, "12"},
    {"Hexadecimal", U2, "0x10", {}, 4, "16"},
    {"HexadecimalWithE", U2, "0x1e", {}, 4, "30"},
    {"TrailingText", U2, "12abc", {}, 2, "12"},
    {"NoDigits", U2, "-", {}, none, ""},
    {"Empty", U2, "", {}, none, ""},
    {"NoSuchCode", 0, "5", {}, none, ""},
    // Widths
    {"S1Above", S1, "128", {}, 3, "127"},
    {"S1Below", S1, "-129", {}, 4, "-128"},
    {"S1BeyondItsScanWraps", S1, "65535", {}, 5, "-1"},
    {"U1Wraps", U1, "300", {}, 3, "44"},
    {"U1Minus", U1, "-1", {}, 2, "255"},
    {"U1MinusClamped", U1, "-1", {0, 100}, 2, "100"},
    {"S2Above", S2, "32768", {}, 5, "32767"},
    {"S2Below", S2, "-40000", {}, 6, "-32768"},
    {"U2Above32767", U2, "40000", {0, 65535}, 5, "40000"},
    {"S4Above", S4, "2147483648", {}, 10, "2147483647"},
    {"S4Below", S4, "-99999999999", {}, 12, "-2147483648"},
    {"S4BeyondItsScan", S4, "99999999999999999999", {}, 20, "2147483647"},
    {"U4Minus", U4, "-1", {}, 2, "4294967295"},
    {"S8Below", S8, "-99999999999999999999", {}, 21, "-9223372036854775808"},
    {"U8TopsOut", U8, "99999999999999999999", {}, 20, "9223372036854775807"},
    // Range and step
    {"ToMinimum", S4, "-900", {-720, 720}, 4, "-720"},
    {"ToMaximum", S4, "900", {-720, 720}, 3, "720"},
    {"AtHalfUp", S4, "15", {none, none, 10}, 2, "20"},
    {"BelowHalfDown", S4, "14", {none, none, 10}, 2, "10"},
    {"OddStepBelowTruncatedHalf", U2, "6", {none, none, 5}, 1, "5"},
    {"OddStepAtTruncatedHalf", U2, "7", {none, none, 5}, 1, "10"},
    {"NegativeTowardsZero", S4, "-19", {none, none, 10}, 3, "-10"},
    {"StepOfOne", S4, "15", {none, none, 1}, 2, "15"},
    {"CountedFromZeroNotMinimum", S4, "6", {5, 100, 10}, 1, "10"},
    {"NotClampedAgain", S4, "500", {-95, 95, 10}, 3, "100"},
    {"SaturatedAfterStep", S1, "127", {none, none, 10}, 3, "127"},
    {"UnsignedWrapsAfterStep", U1, "255", {none, none, 10}, 3, "4"},
    {"SaturatedWhenTheStepWraps", S4, "9223372036854775807", {none, none, 10}, 19, "2147483647"},
    {"WidestSigned", S8, "9223372036854775807", {none, none, 10}, 19, "-9223372036854775806"},
    // Fractions
    {"Half", U2, "0.5", {0, 1000}, 3, "500"},
    {"HalfWithStep", U2, "0.5", {0, 1000, 3}, 3, "501"},
    {"HalfAwayFromZero", S2, ".5", {-5, 0}, 2, "-3"},
    {"AboveOne", U2, "12.5", {0, 1000}, 4, "1000"},
    {"BelowZero", S2, "-0.5", {-100, 1000}, 4, "-100"},
    {"Exponent", U2, "5e-1", {0, 1000}, 4, "500"},
    {"Infinite", U2, "1e50", {0, 1000}, 4, "1000"},
    {"NotANumber", U2, ".", {0, 1000}, none, ""},
    {"WordWithE", U2, "enable", {0, 1000}, none, ""},
    {"NoMinimum", U2, "0.5", {none, 1000}, none, ""},
    {"NoMaximum", U2, "0.5", {0, none}, none, ""},
    {"TopOfS4", S4, "1.0", {kS4Min, kS4Max}, 3, "2147483647"},
    {"TopOfU4", U4, "1.0", {0, 4294967295}, 3, "4294967295"},
    {"TopOfU8", U8, "1.0", {0, -1}, 3, "18446744073709551615"},
    {"StepPastTheTypeIsNotSaturated", S1, "1.0", {0, 127, 10}, 3, "-126"},
    {"Boolean", B, ".5", {0, 1}, 2, "true"},
    // Words
    {"Default", S4, "DEFAULT", {none, none, none, -7}, 7, "-7"},
    {"Minimum", U8, "minimum,", {5, none}, 7, "5"},
    {"Maximum", S2, "MaximumX", {none, -6}, 7, "-6"},
    {"DefaultAbsent", S4, "default", {1, 2, 3}, none, ""},
    {"True", B, "True,", {}, 4, "true"},
    {"No", B, "no", {}, 2, "false"},
    {"False", B, "FALSE", {}, 5, "false"},
    {"Zero", B, "0x1", {}, 1, "false"},
    {"BlankZero", B, " 0", {}, 2, "false"},
    {"NumberIsNotStepped", B, "5", {none, none, 16}, 1, "true"},
    {"NeitherWordNorNumber", B, "on", {}, none, ""},
};

TEST(ComponentScan, StoresAndConsumes) {
    for (const Scanned &row : kScans) {
        SCOPED_TRACE(row.row);
        std::uint64_t records[4] = {};
        const void *given[4] = {};
        const std::optional<std::int64_t> numbers[4] = {row.limits.minimum, row.limits.maximum,
                                                        row.limits.stepSize, row.limits.defaultValue};
        for (std::size_t i = 0; i < 4; ++i) {
            if (!numbers[i]) continue;
            uvc::store(row.code, &records[i], static_cast<std::uint64_t>(*numbers[i]));
            given[i] = &records[i];
        }

        std::uint8_t field[9];
        for (std::uint8_t &byte : field) byte = 0x5A;
        const auto consumed = uvc::scanComponent(
            row.code, row.text.c_str(), field, {given[0], given[1], given[2], given[3]}, uvc::Diagnostics(0));
        EXPECT_EQ(consumed, row.consumed);

        const std::size_t touched = consumed ? UVCTypeComponentByteSize(row.code) : 0;
        for (std::size_t i = touched; i < sizeof field; ++i) EXPECT_EQ(field[i], 0x5A) << "byte " << i;
        if (!consumed) continue;
        EXPECT_EQ(*UVCType::uvcTypeWithFieldNamesAndTypes({{"", row.code}})->stringFromBuffer(field),
                  row.value);
    }
}

struct Message {
    const char *row;
    std::uint32_t code;
    const char *text;
    bool hasRange;
    std::string information;
    std::string warnings;
};

const Message kMessages[] = {
    {"Default", U2, "default", true, "INFO: Default value requested\n",
     "WARNING: Default value requested, none provided by control\n"},
    {"Minimum", U2, "minimum", false, "INFO: Minimum value requested\n",
     "WARNING: Minimum value requested, none provided by control\n"},
    {"Maximum", U2, "maximum", false, "INFO: Maximum value requested\n",
     "WARNING: Maximum value requested, none provided by control\n"},
    {"MaximumGiven", U2, "maximum", true, "INFO: Maximum value requested\n", ""},
    {"Integer", U2, " 5}", false, "INFO: Defaulting to integer value at ' 5}'\n", ""},
    {"NoInteger", U2, "%s", false, "INFO: Defaulting to integer value at '%s'\n",
     "WARNING: Unable to scan integer value at '%s'\n"},
    {"Float", U2, "0.5", true, "INFO: Floating-point value detected at '0.5'\n", ""},
    {"FloatWithoutRange", U2, "0.5", false, "INFO: Floating-point value detected at '0.5'\n",
     "WARNING: No value range provided by control, floating-point input not available\n"},
    {"NoFloat", U2, "e5", true, "INFO: Floating-point value detected at 'e5'\n",
     "WARNING: Unable to scan floating-point value at 'e5'\n"},
    {"Boolean", B, "on", false, "INFO: Defaulting to integer value at 'on'\n",
     "WARNING: Invalid boolean value at 'on'\nWARNING: Unable to scan integer value at 'on'\n"},
};

TEST(ComponentMessages, FollowTheFlags) {
    for (const Message &row : kMessages) {
        SCOPED_TRACE(row.row);
        const std::int64_t minimum = 0;
        const std::int64_t maximum = 1;
        const uvc::ScanLimits limits{row.hasRange ? &minimum : nullptr, row.hasRange ? &maximum : nullptr,
                                     nullptr, nullptr};
        const auto printed = [&](unsigned flags) {
            std::int64_t field = 0;
            testing::internal::CaptureStderr();
            static_cast<void>(
                uvc::scanComponent(row.code, row.text, &field, limits, uvc::Diagnostics(flags)));
            return testing::internal::GetCapturedStderr();
        };
        EXPECT_EQ(printed(0), "");
        EXPECT_EQ(printed(uvc::kShowWarnings), row.warnings);
        EXPECT_EQ(printed(uvc::kShowInformation), row.information);
        EXPECT_EQ(printed(kAll).size(), row.warnings.size() + row.information.size());
    }
}

}  // namespace
