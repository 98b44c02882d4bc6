// The value strings under a locale whose decimal point is a comma, set up the way a desktop session does it.
// The locale is made here, so that the test does not depend on what the machine has installed.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <QApplication>
#include <QTemporaryDir>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <string>

#include "uvc/uvc_type.h"

namespace {

int localedefStatus = -1;  // of the command that makes the locale

TEST(SpanishLocale, IsInForce) {
    ASSERT_EQ(localedefStatus, 0) << "localedef and the locale sources (Debian package locales) are needed";
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    float scanned = 0;
    ASSERT_EQ(std::sscanf("0.5", "%g", &scanned), 1);
    ASSERT_EQ(scanned, 0.0F) << "without the comma the other test proves nothing";
}

TEST(SpanishLocale, ScansADecimalPoint) {
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    const auto type = UVCType::uvcTypeWithCString("{U2}");
    std::uint16_t value = 0;
    const std::uint16_t minimum = 0;
    const std::uint16_t maximum = 1000;
    EXPECT_TRUE(type->scanCString("0.5", &value, 0, &minimum, &maximum));
    EXPECT_EQ(value, 500);
    EXPECT_STREQ(std::localeconv()->decimal_point, ",") << "the scan must give the locale back";

    std::uint16_t pair[2] = {};
    const std::uint16_t pairMaximum[2] = {1000, 60000};
    EXPECT_TRUE(UVCType::uvcTypeWithCString("{U2 blue; U2 red}")
                    ->scanCString("{0.25, 0.75}", pair, 0, &pair, &pairMaximum));
    EXPECT_EQ(pair[0], 250);
    EXPECT_EQ(pair[1], 45000);
}

}  // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();

    const QTemporaryDir temporary;
    const std::string folder = temporary.path().toStdString();
    const std::string command = "localedef -i es_ES -f UTF-8 '" + folder + "/es_ES.UTF-8'";
    localedefStatus = std::system(command.c_str());
    setenv("LOCPATH", folder.c_str(), 1);
    setenv("LC_ALL", "es_ES.UTF-8", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);

    const QApplication application(argc, argv);  // takes over the environment's locale
    return RUN_ALL_TESTS();
}
