// The main of the test programs that need a QApplication.
#include <gtest/gtest.h>

#include <QApplication>
#include <QtGlobal>

#include "platform/qt/spanish.h"

int main(int argc, char **argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Tests that expect a death run it in a fresh process: a forked copy of a QApplication is not reliable.
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    ::testing::InitGoogleTest(&argc, argv);

    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("ZelvoriaTests"));
    QApplication::setApplicationName(QStringLiteral("zelvoria-tests"));
    platform::speakSpanish(application);
    return RUN_ALL_TESTS();
}
