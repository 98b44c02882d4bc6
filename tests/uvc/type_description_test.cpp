#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>

#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_type.h"

namespace {

struct Parsed {
    const char *row;
    const char *text;
    std::string fields;    // "S4 pan; ", empty: refused
    std::string messages;  // all of standard error
};

const Parsed kDescriptions[] = {
    // Accepted
    {"OneUnnamedField", "{U2}", "U2 ;", ""},
    {"AllTokens", "{B a;S1 b;U1 c;S2 d;U2 e;S4 f;U4 g;S8 h;U8 i}",
     "B a;S1 b;U1 c;S2 d;U2 e;S4 f;U4 g;S8 h;U8 i;", ""},
    {"LowerCaseSignLetters", "{s4 pan; u1 speed}", "S4 pan;U1 speed;", ""},
    {"LeadingBlanks", " \t\n{S4 pan; S4 tilt}", "S4 pan;S4 tilt;", ""},
    {"NamesBecomeLowerCase", "{S1 Pan-Relative}", "S1 pan-relative;", ""},
    {"NoBlankBeforeTheName", "{S4pan;Bflag}", "S4 pan;B flag;", ""},
    {"RunsOfSeparators", "{ ;S4 pan ;; ; S4 tilt ; }", "S4 pan;S4 tilt;", ""},
    {"TextBehindTheBraceIsIgnored", "{U2} S3", "U2 ;", ""},
    {"NoClosingBraceBehindSecondName", "{S4 pan; S4 tilt", "S4 pan;S4 tilt;", ""},
    {"NoClosingBraceBehindSeparator", "{S4 pan;", "S4 pan;", ""},
    // Refused
    {"Empty", "", "", "WARNING: No opening brace found: "},
    {"NoFieldClosed", "{}", "", ""},
    {"NoFieldOpen", "{", "", ""},
    {"UnknownWidth", "{S3 x}", "", "WARNING: Invalid type string at 1 in: {S3 x}"},
    {"LowerCaseBoolean", "{b flag}", "", "WARNING: Invalid type string at 1 in: {b flag}"},
    {"OtherLetter", " {U1 a; x}", "", "WARNING: Invalid type string at 8 in:  {U1 a; x}"},
    {"LetterAtTheEnd", "{S", "", "WARNING: Invalid type string at 1 in: {S"},
    {"EndBehindToken", "{S4 ", "", "WARNING: Early end to type string at 4 in: {S4 "},
    {"EndBehindFirstName", "{S4 pan", "", "WARNING: Early end to type string at 7 in: {S4 pan"},
    {"RepeatedNameOtherCase", "{S4 Pan; S4 PAN}", "",
     "WARNING: Repeated use of type name at index 15 in '{S4 Pan; S4 PAN}'\n"},
    {"RepeatedEmptyName", "{U1; U1}", "", "WARNING: Repeated use of type name at index 7 in '{U1; U1}'\n"},
    {"LaterFaultBeforeRepeat", "{U1; U1; q}", "", "WARNING: Invalid type string at 9 in: {U1; U1; q}"},
};

TEST(TypeDescription, YieldsFieldsOrItsMessage) {
    for (const Parsed &row : kDescriptions) {
        SCOPED_TRACE(row.row);
        testing::internal::CaptureStderr();
        const auto type = UVCType::uvcTypeWithCString(row.text);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.messages);

        std::string fields;
        for (std::size_t i = 0; type && i < type->fieldCount(); ++i)
            fields += std::string(__UVCTypeComponentTypeString(type->fieldTypeAtIndex(i))) + " " +
                      *type->fieldNameAtIndex(i) + ";";
        EXPECT_EQ(fields, row.fields);
    }
}

TEST(TypeCreation, FromArraysKeepsNamesAndRefusesHolesAndUnknownCodes) {
    const char *names[] = {"Pan", "Flag", nullptr};
    const std::uint32_t types[] = {6, 0, 3};
    const auto type = UVCType::uvcTypeWithFieldCount(2, names, types);
    ASSERT_TRUE(type);
    EXPECT_EQ(*type->fieldNameAtIndex(0), "Pan");
    EXPECT_EQ(type->byteSize(), 4u);  // code 0 is let through here and takes no room

    EXPECT_FALSE(UVCType::uvcTypeWithFieldCount(3, names, types));
    const std::uint32_t above[] = {6, 10};
    EXPECT_FALSE(UVCType::uvcTypeWithFieldCount(2, names, above));
    EXPECT_FALSE(UVCType::uvcTypeWithFieldCount(0, names, types));
}

TEST(TypeCreation, FromPairsEndsAtMissingNameOrBadCode) {
    EXPECT_EQ(
        UVCType::uvcTypeWithFieldNamesAndTypes({{"a", 1}, {"b", 9}, {nullptr, 3}, {"c", 3}})->fieldCount(),
        2u);
    EXPECT_EQ(UVCType::uvcTypeWithFieldNamesAndTypes({{"a", 1}, {"b", 0}, {"c", 3}})->fieldCount(), 1u);
    EXPECT_FALSE(UVCType::uvcTypeWithFieldNamesAndTypes({{"a", 10}}));
}

TEST(TypeQueries, OffsetsAndLookupsAtAndBeyondTheLimits) {
    const auto type = UVCType::uvcTypeWithCString("{S1 zoom; U8 big; B digital-zoom}");
    ASSERT_TRUE(type);
    EXPECT_EQ(type->byteSize(), 10u);
    EXPECT_EQ(type->offsetToFieldAtIndex(0), 0u);
    EXPECT_EQ(type->offsetToFieldAtIndex(2), 9u);
    EXPECT_EQ(type->offsetToFieldAtIndex(3), 10u);  // one past the last is let through
    EXPECT_EQ(type->offsetToFieldAtIndex(4), UVCType::notFound);
    EXPECT_EQ(type->offsetToFieldWithName("BIG"), 1u);
    EXPECT_EQ(type->offsetToFieldWithName("bi"), UVCType::notFound);
    EXPECT_EQ(type->indexOfFieldWithName("Digital-Zoom"), 2u);
    EXPECT_EQ(type->typeWithName("Big"), 9u);
    EXPECT_EQ(type->typeWithName(""), 0u);
    EXPECT_EQ(type->fieldNameAtIndex(3), nullptr);
    EXPECT_EQ(type->fieldTypeAtIndex(3), 0u);
    EXPECT_EQ(UVCTypeComponentByteSize(10), 0u);
    EXPECT_EQ(__UVCTypeComponentVerboseTypeString(10), nullptr);
}

TEST(TypeTexts, DescriptionAndSummary) {
    const auto panTilt = UVCType::uvcTypeWithCString("{S4 pan; S4 tilt}");
    char address[32];
    std::snprintf(address, sizeof address, "%p", static_cast<const void *>(panTilt.get()));
    const char *swap = std::endian::native == std::endian::little ? "no" : "yes";
    EXPECT_EQ(panTilt->description(), std::string("UVCType@") + address +
                                          " { field-count: 2; byte-size: 8; needs-byte-swap: " + swap +
                                          "; fields: { S4 pan; S4 tilt; } }");
    EXPECT_EQ(panTilt->typeSummaryString(),
              "    signed 32-bit integer            pan;\n    signed 32-bit integer            tilt;\n");
    EXPECT_EQ(UVCType::uvcTypeWithCString("{B}")->typeSummaryString(), "    single value, boolean\n");
}

TEST(TypeTexts, ValueStringsHoldEachTypesExtremes) {
    const auto type = UVCType::uvcTypeWithCString("{B a;S1 b;U1 c;S2 d;U2 e;S4 f;U4 g;S8 h;U8 i}");
    std::vector<std::uint8_t> record(type->byteSize(), 0xFF);
    EXPECT_EQ(type->stringFromBuffer(record.data()),
              "{a=true,b=-1,c=255,d=-1,e=65535,f=-1,g=4294967295,h=-1,i=18446744073709551615}");

    const std::uint8_t seven = 7;
    EXPECT_EQ(UVCType::uvcTypeWithCString("{B}")->stringFromBuffer(&seven), "true");

    const char *names[] = {"none", "x"};
    const std::uint32_t types[] = {0, 2};
    EXPECT_EQ(UVCType::uvcTypeWithFieldCount(2, names, types)->stringFromBuffer(&seven), "{x=7}");
    EXPECT_FALSE(UVCType::uvcTypeWithFieldCount(1, names, types)->stringFromBuffer(&seven));
}

TEST(TypeByteOrder, ReversesEachFieldOnItsOwn) {
    const auto type = UVCType::uvcTypeWithCString("{U1 a; U2 b; U4 c}");
    std::vector<std::uint8_t> record = {1, 2, 3, 4, 5, 6, 7};
    uvc::reverseFieldBytes(*type, record.data());
    EXPECT_EQ(record, (std::vector<std::uint8_t>{1, 3, 2, 7, 6, 5, 4}));
}

TEST(Catalogue, EveryDescriptionParsesToTheSizeOfItsControl) {
    // Sizes by the request tables of USB Video Class 1.1, section 4.2.2.
    const std::size_t sizes[] = {1, 1, 1, 4, 1, 2, 2, 1, 2, 1, 2, 3, 8, 4, 2, 2, 1, 2,
                                 2, 2, 2, 1, 2, 2, 2, 2, 2, 1, 4, 1, 2, 2, 1, 1, 1};
    for (std::size_t i = 0; i < UVCControllerControls.size(); ++i) {
        SCOPED_TRACE(UVCControllerControls[i].name);
        const auto type = uvc::controlType(i);
        EXPECT_EQ(type->byteSize(), sizes[i]);
        EXPECT_EQ(type, uvc::controlType(i));  // built once
    }
}

TEST(CatalogueDeathTest, BrokenDescriptionEndsTheProgram) {
    EXPECT_EXIT(static_cast<void>(uvc::typeOrFatal("{S3}")), testing::ExitedWithCode(14),
                "FATAL ERROR:  unable to instantiate UVCType for description \\{S3\\} !!!\n");
}

}  // namespace
