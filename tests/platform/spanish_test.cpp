#include <gtest/gtest.h>

#include <QLocale>

#include <clocale>
#include <cstdio>

namespace {

TEST(Spanish, FormatsForThePersonButNotForTheCamera) {
    EXPECT_EQ(QLocale().toString(1.5).toStdString(), "1,5");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    float half = 0;
    EXPECT_EQ(std::sscanf("0.5", "%g", &half), 1);
    EXPECT_EQ(half, 0.5F);
}

}  // namespace
