#include <gmock/gmock.h>

#include <QSignalSpy>

#include "support/application_fixture.h"
#include "ui/content_view.h"

namespace {

using WindowTest = ApplicationTest;

/// All of the menu bar, at the top of `window`, can be seen.
void expectWholeMenu(const QWidget *window) {
    const auto *bar = window->findChild<QMenuBar *>();
    EXPECT_EQ(QRect(bar->mapTo(window, QPoint()), bar->size()),
              QRect(0, 0, window->width(), bar->sizeHint().height()));
    for (QAction *menu : bar->actions())
        EXPECT_TRUE(bar->rect().contains(bar->actionGeometry(menu))) << menu->text().toStdString();
}

QWidget *menuStrip() {
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->objectName() == QStringLiteral("menuStrip")) return window;
    return nullptr;
}

/// What the program ends with after `act`; 1 when it goes on.
int endAfter(const std::function<void()> &act) {
    QTimer::singleShot(0, act);
    QTimer::singleShot(5000, [] { QCoreApplication::exit(1); });
    return QApplication::exec();
}

TEST_F(WindowTest, FirstStartIsCentredAtTheContentsSizeAndTitled) {
    launch();
    const auto *window = delegate_->mainWindow();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Zelvoria. Control de cámara"));
    EXPECT_EQ(window->centralWidget()->size(), QSize(600, 200));
    const QPoint offCentre = window->geometry().center() - window->screen()->availableGeometry().center();
    EXPECT_LE(offCentre.manhattanLength(), 2);
}

TEST_F(WindowTest, ContentKeepsItsLimitsBelowTheMenuWhateverIsAskedAndWhateverTheFont) {
    launch();
    auto *window = delegate_->mainWindow();
    for (const int points : {9, 20}) {
        const support::DesktopFont font(points);
        for (const auto &[asked, width] : {std::pair{100, 600}, std::pair{700, 700}, std::pair{3000, 800}}) {
            window->resize(asked, asked);
            QCoreApplication::processEvents();
            EXPECT_EQ(window->centralWidget()->size(), QSize(width, 200)) << asked;
            EXPECT_EQ(window->height(), window->menuBar()->sizeHint().height() + 200) << points;
            expectWholeMenu(window);
        }
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
    EXPECT_EQ(menuStrip()->findChild<QMenuBar *>()->actions(), window->menuBar()->actions());
    EXPECT_EQ(menuStrip()->pos(), window->pos());
    expectWholeMenu(menuStrip());

    command("Mover_Derecha_Delegate");
    EXPECT_EQ(bench_.camera->target().pan, 3600);

    EXPECT_EQ(endAfter([] { menuStrip()->close(); }), 0);
}

TEST_F(WindowTest, SalirQuitsWithoutTheStrip) {
    launch();
    EXPECT_EQ(endAfter([this] { shortcut(Qt::Key_Q); }), 0);
    EXPECT_EQ(menuStrip(), nullptr);
}

}  // namespace
