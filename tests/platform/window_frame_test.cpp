#include "platform/qt/window_frame.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTest>
#include <QWidget>

#include "surroundings.h"

namespace {

const QString kName = QStringLiteral("Main Window");
const QString kKey = QStringLiteral("NSWindow Frame Main Window");

class WindowFrame : public FolderTest {
 protected:
    void SetUp() override {
        FolderTest::SetUp();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(path()));
        QSettings().clear();
    }

    static void store(const QString &text) { QSettings().setValue(kKey, text); }
    [[nodiscard]] static QString stored() { return QSettings().value(kKey).toString(); }
};

TEST_F(WindowFrame, IsLeftAloneByWhatIsNoUsableFrame) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const auto at = [](int x, int y) { return QStringLiteral("%1 %2 650 200 0 0 800 800").arg(x).arg(y); };
    const QString rows[] = {
        QString(),
        QStringLiteral("10 20 650 x 0 0 800 800"),
        QStringLiteral("10 20 650 -200 0 0 800 800"),
        QStringLiteral("99999999999 20 650 200 0 0 800 800"),
        QStringLiteral("2147483647 2147483647 2147483647 200 0 0 800 800"),
        at(screen.right() + 100, 20),
        at(20, screen.bottom() + 1),
        at(20, screen.top() - 20),  // the content would show, the title bar would not
    };
    for (const QString &row : rows) {
        store(row);
        QWidget window;
        window.setGeometry(70, 80, 480, 300);
        const QRect before(window.pos(), window.size());
        platform::WindowFrame frame(&window, kName);
        EXPECT_FALSE(frame.restore()) << row.toStdString();
        EXPECT_EQ(QRect(window.pos(), window.size()), before) << row.toStdString();
    }
    store(at(screen.left() - 500, 20));  // a good part of the title bar can still be grabbed
    QWidget window;
    platform::WindowFrame frame(&window, kName);
    EXPECT_TRUE(frame.restore());
}

TEST_F(WindowFrame, IsTheOneThatWasChosenNotThatOfAMinimisedMaximisedOrFullScreenWindow) {
    QWidget window;
    platform::WindowFrame frame(&window, kName);
    window.show();
    window.setGeometry(30, 40, 500, 200);
    ASSERT_TRUE(QTest::qWaitFor([] { return !stored().isEmpty(); }, 3000));
    const QString chosen = stored();
    for (const Qt::WindowState state : {Qt::WindowMinimized, Qt::WindowMaximized, Qt::WindowFullScreen}) {
        window.setWindowState(state);
        window.move(-500,
                    -500 - static_cast<int>(state));  // some desktops put minimised windows out of sight
        QTest::qWait(300);
        EXPECT_EQ(stored(), chosen) << static_cast<int>(state);
    }
    window.showNormal();
    window.move(33, 44);
    window.close();
    EXPECT_TRUE(stored().startsWith(QStringLiteral("33 44 ")))
        << "closed at once: " << stored().toStdString();
}

}  // namespace
