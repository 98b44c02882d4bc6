// The value strings under a locale whose decimal point is a comma. The locale is made here, so that the test
// does not depend on what the machine has installed.

#include <gtest/gtest.h>
#include <locale.h>
#include <stdlib.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "uvc/uvc_type.h"

namespace {

TEST(SpanishLocale, LeavesTheDecimalPointOfFractionsAlone) {
    const std::string folder = testing::TempDir() + "zelvoria-locale";
    const std::string make =
        "mkdir -p " + folder + " && localedef -i es_ES -f UTF-8 " + folder + "/es_ES.UTF-8";
    ASSERT_EQ(std::system(make.c_str()), 0)
        << "localedef and its sources (Debian package locales) are needed";
    setenv("LOCPATH", folder.c_str(), 1);
    ASSERT_NE(setlocale(LC_ALL, "es_ES.UTF-8"), nullptr);
    float scanned = 0;
    ASSERT_EQ(std::sscanf("0.5", "%g", &scanned), 1);
    ASSERT_EQ(scanned, 0.0F) << "without the comma the rest proves nothing";

    std::uint16_t pair[2] = {};
    const std::uint16_t maximum[2] = {1000, 60000};
    const auto type = UVCType::uvcTypeWithCString("{U2 blue; U2 red}");
    EXPECT_TRUE(type->scanCString("{0.25, 0.75}", pair, 0, &pair, &maximum));
    EXPECT_EQ(type->stringFromBuffer(pair), "{blue=250,red=45000}");
    EXPECT_STREQ(localeconv()->decimal_point, ",") << "the scan must give the locale back";
}

}  // namespace
