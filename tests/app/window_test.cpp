#include <gmock/gmock.h>

#include <QSignalSpy>

#include "application_fixture.h"
#include "ui/content_view.h"

namespace {

using WindowTest = ApplicationTest;

QWidget *menuStrip() {
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->objectName() == QStringLiteral("menuStrip")) return window;
    return nullptr;
}

TEST_F(WindowTest, FirstStartIsCentredAtTheContentsSizeAndTitled) {
    launch();
    const auto *window = delegate_->mainWindow();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Zelvoria. Control de cámara"));
    EXPECT_EQ(window->centralWidget()->size(), QSize(600, 200));
    const QPoint offCentre = window->geometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LE(offCentre.manhattanLength(), 2);
}

TEST_F(WindowTest, ContentKeepsItsLimitsWhateverIsAsked) {
    launch();
    auto *window = delegate_->mainWindow();
    for (const auto &[asked, width] : {std::pair{100, 600}, std::pair{700, 700}, std::pair{3000, 800}}) {
        window->resize(asked, asked);
        QCoreApplication::processEvents();
        EXPECT_EQ(window->centralWidget()->size(), QSize(width, 200)) << asked;
    }
}

TEST_F(WindowTest, SecondStartComesBackWhereTheWindowWas) {
    launch();
    delegate_->mainWindow()->resize(720, 10);
    delegate_->mainWindow()->move(31, 47);
    QTest::qWait(700);
    const QRect frame = delegate_->mainWindow()->frameGeometry();
    restart();
    EXPECT_EQ(delegate_->mainWindow()->frameGeometry(), frame);
}

TEST_F(WindowTest, ClosingLeavesAReachableMenuAndClosingThatQuits) {
    launch();
    auto *window = delegate_->mainWindow();
    window->close();
    ASSERT_NE(menuStrip(), nullptr);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(menuStrip()->isVisible());
    EXPECT_EQ(window->onScreen(), menuStrip()) << "what a second start brings to the front";
    QStringList titles;
    for (const QAction *menu : menuStrip()->findChild<QMenuBar *>()->actions()) titles.append(menu->text());
    EXPECT_EQ(titles, QStringList({"&Archivo", "&Cámara", "A&yuda"}));

    command("Mover_Derecha_Delegate");
    EXPECT_EQ(bench_.camera->target().pan, 3600);

    QTimer::singleShot(0, [] { menuStrip()->close(); });
    QTimer::singleShot(5000, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0);
}

TEST_F(WindowTest, SalirQuitsWithoutTheStrip) {
    launch();
    QTimer::singleShot(0, [this] { command("Quit"); });
    QTimer::singleShot(5000, [] { QCoreApplication::exit(1); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_FALSE(menuStrip()->isVisible());
}

}  // namespace
