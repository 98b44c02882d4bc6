#include "platform/qt/desktop.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <QIcon>
#include <QSettings>
#include <QTest>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "platform/fatal.h"
#include "platform/services.h"

namespace {

TEST(DesktopDeath, ProgramHasItsNamesItsIconAndItsServicesAndOutlivesTheReaderOfItsLines) {
    EXPECT_EXIT(
        {
            platform::startDesktop(*qApp, "Cámara de pruebas");
            std::raise(SIGPIPE);
            // Where the window's place is remembered; what the desktop calls the windows.
            std::fprintf(stderr, "%s %s\n", qPrintable(QSettings().fileName()),
                         qPrintable(QGuiApplication::desktopFileName()));
            const platform::Services &services = platform::services();
            const bool isEquipped = services.alerts && services.folders && services.panels &&
                                    services.webPages && services.shell->run({"exit 3"}) == 3;
            const auto isDrawn = [] {
                const QImage icon = QApplication::windowIcon().pixmap(32).toImage();
                return !icon.isNull() && icon.pixelColor(16, 16).alpha() == 255;
            };
            const bool hasIcon = QTest::qWaitFor(isDrawn, 3000);
            std::_Exit(isEquipped && hasIcon && !QGuiApplication::quitOnLastWindowClosed() ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "/Zelvoria/platform_tests\\.conf platform_tests\n");
}

TEST(FatalStopDeath, LosesNoLineThatWasPrinted) {
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            std::fputs("last words", stdout);
            platform::fatalStop();
        },
        ::testing::KilledBySignal(SIGABRT), "last words");
}

}  // namespace
