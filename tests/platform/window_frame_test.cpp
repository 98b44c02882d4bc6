#include "platform/qt/window_frame.h"

#include "surroundings.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QTest>
#include <QWidget>

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

TEST_F(WindowFrame, KeepsAMoveThatIsFollowedByClosing) {
    QWidget window;
    platform::WindowFrame frame(&window, kName);
    window.show();
    window.move(33, 44);
    window.close();
    EXPECT_TRUE(stored().startsWith(QStringLiteral("33 44 "))) << stored().toStdString();
}

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

TEST_F(WindowFrame, IsNotTheOneOfAFullScreenWindow) {
    QWidget window;
    platform::WindowFrame frame(&window, kName);
    window.show();
    window.setGeometry(30, 40, 500, 200);
    ASSERT_TRUE(QTest::qWaitFor([] { return !stored().isEmpty(); }, 3000));
    const QString normal = stored();
    window.showFullScreen();
    QTest::qWait(400);
    EXPECT_EQ(stored(), normal);
}

}  // namespace
