#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <string>

#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_type.h"

namespace {

struct Parsed {
    const char *text;
    std::string fields;    // empty: refused
    std::string messages;  // all of standard error
};

const Parsed kDescriptions[] = {
    {"{U2}", "U2 ;", ""},
    {"{B a;s1 b;u1 c;S2 d;U2 e;S4 f;U4 g;S8 h;U8 i}", "B a;S1 b;U1 c;S2 d;U2 e;S4 f;U4 g;S8 h;U8 i;", ""},
    {" \t\n{S1 Pan-Relative2}", "S1 pan-relative2;", ""},
    {"{ ;S4pan ;; ; Btilt ; } S3", "S4 pan;B tilt;", ""},
    {"{S4 pan; S4 tilt", "S4 pan;S4 tilt;", ""},
    {"{S4 pan;", "S4 pan;", ""},
    {"{}", "", ""},
    {"{", "", ""},
    {"S4 pan", "", "WARNING: No opening brace found: S4 pan"},
    {"{S3 x}", "", "WARNING: Invalid type string at 1 in: {S3 x}"},
    {"{b flag}", "", "WARNING: Invalid type string at 1 in: {b flag}"},
    {" {U1 a; x}", "", "WARNING: Invalid type string at 8 in:  {U1 a; x}"},
    {"{S", "", "WARNING: Invalid type string at 1 in: {S"},
    {"{S4 ", "", "WARNING: Early end to type string at 4 in: {S4 "},
    {"{S4 pan", "", "WARNING: Early end to type string at 7 in: {S4 pan"},
    {"{S4 Pan; S4 PAN}", "", "WARNING: Repeated use of type name at index 15 in '{S4 Pan; S4 PAN}'\n"},
    {"{U1; U1}", "", "WARNING: Repeated use of type name at index 7 in '{U1; U1}'\n"},
    {"{U1; U1; q}", "", "WARNING: Invalid type string at 9 in: {U1; U1; q}"},
};

TEST(TypeDescription, YieldsFieldsOrItsMessage) {
    for (const Parsed &row : kDescriptions) {
        testing::internal::CaptureStderr();
        const auto type = UVCType::uvcTypeWithCString(row.text);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.messages);

        std::string fields;
        for (std::size_t i = 0; type && i < type->fieldCount(); ++i)
            fields += std::string(__UVCTypeComponentTypeString(type->fieldTypeAtIndex(i))) + " " +
                      *type->fieldNameAtIndex(i) + ";";
        EXPECT_EQ(fields, row.fields) << row.text;
    }
}

TEST(TypeCreation, FromArraysAndPairsKeepsNamesAndStopsAtHolesAndBadCodes) {
    const char *names[] = {"Pan", "None", "X", nullptr};
    const std::uint32_t types[] = {6, 0, 9, 3};
    const auto type = UVCType::uvcTypeWithFieldCount(3, names, types);
    ASSERT_TRUE(type);
    const std::uint8_t record[12] = {0xFF, 0xFF, 0xFF, 0xFF, 7, 7, 7, 7, 7, 7, 7, 7};
    EXPECT_EQ(type->stringFromBuffer(record), "{Pan=-1,X=506381209866536711}");  // code 0 takes no room
    EXPECT_FALSE(UVCType::uvcTypeWithFieldCount(4, names, types));
    const std::uint32_t above[] = {6, 10};
    EXPECT_FALSE(UVCType::uvcTypeWithFieldCount(2, names, above));
    EXPECT_FALSE(UVCType::uvcTypeWithFieldCount(1, names, types + 1)->stringFromBuffer(record));

    EXPECT_EQ(UVCType::uvcTypeWithFieldNamesAndTypes({{"a", 1}, {"b", 9}, {nullptr, 3}})->fieldCount(), 2u);
    EXPECT_EQ(UVCType::uvcTypeWithFieldNamesAndTypes({{"a", 1}, {"b", 0}, {"c", 3}})->fieldCount(), 1u);
    EXPECT_FALSE(UVCType::uvcTypeWithFieldNamesAndTypes({{"a", 10}}));
}

TEST(Type, LooksFieldsUpAtAndBeyondTheLimits) {
    const auto type = UVCType::uvcTypeWithCString("{S1 zoom; U8 big; B digital-zoom}");
    EXPECT_EQ(type->offsetToFieldAtIndex(2), 9u);
    EXPECT_EQ(type->offsetToFieldAtIndex(3), 10u);  // one past the last is let through
    EXPECT_EQ(type->offsetToFieldAtIndex(4), UVCType::notFound);
    EXPECT_EQ(type->offsetToFieldWithName("BIG"), 1u);
    EXPECT_EQ(type->offsetToFieldWithName("bi"), UVCType::notFound);
    EXPECT_EQ(type->typeWithName("Digital-Zoom"), 1u);
    EXPECT_EQ(type->typeWithName(""), 0u);
    EXPECT_EQ(type->fieldNameAtIndex(3), nullptr);
}

TEST(Type, DescribesItself) {
    const auto panTilt = UVCType::uvcTypeWithCString("{S4 pan; S4 tilt}");
    char head[96];
    std::snprintf(head, sizeof head, "UVCType@%p { field-count: 2; byte-size: 8; needs-byte-swap: %s",
                  static_cast<const void *>(panTilt.get()),
                  std::endian::native == std::endian::little ? "no" : "yes");
    EXPECT_EQ(panTilt->description(), head + std::string("; fields: { S4 pan; S4 tilt; } }"));
}

TEST(Type, ReversesEachFieldOnItsOwn) {
    std::vector<std::uint8_t> record = {1, 2, 3, 4, 5, 6, 7};
    uvc::reverseFieldBytes(*UVCType::uvcTypeWithCString("{U1 a; U2 b; U4 c}"), record.data());
    EXPECT_EQ(record, (std::vector<std::uint8_t>{1, 3, 2, 7, 6, 5, 4}));
}

TEST(Catalogue, EveryDescriptionParsesToTheSizeOfItsControl) {
    // Sizes by the request tables of USB Video Class 1.1, section 4.2.2.
    const std::size_t sizes[] = {1, 1, 1, 4, 1, 2, 2, 1, 2, 1, 2, 3, 8, 4, 2, 2, 1, 2,
                                 2, 2, 2, 1, 2, 2, 2, 2, 2, 1, 4, 1, 2, 2, 1, 1, 1};
    for (std::size_t i = 0; i < UVCControllerControls.size(); ++i)
        EXPECT_EQ(uvc::controlType(i)->byteSize(), sizes[i]) << UVCControllerControls[i].name;
    EXPECT_FALSE(uvc::controlType(UVCControllerControls.size()));
}

TEST(CatalogueDeathTest, BrokenDescriptionEndsTheProgram) {
    EXPECT_EXIT(static_cast<void>(uvc::typeOrFatal("{S3}")), testing::ExitedWithCode(14),
                "FATAL ERROR:  unable to instantiate UVCType for description \\{S3\\} !!!\n");
}

}  // namespace
