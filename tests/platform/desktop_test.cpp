#include "platform/qt/desktop.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QIcon>

#include <csignal>
#include <cstdlib>

namespace {

TEST(DesktopDeath, ProgramOutlivesTheReaderOfItsLines) {
    EXPECT_EXIT(
        {
            platform::startDesktop(*qApp, "Cámara de pruebas");
            std::raise(SIGPIPE);
            std::_Exit(QApplication::windowIcon().pixmap(32).isNull() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "")
        << "1: windows have no icon";
}

}  // namespace
