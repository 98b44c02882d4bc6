#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QObject>
#include <QUrl>
#include <csignal>

#include "platform/qt/qt_web_pages.h"

namespace {

class Browser : public QObject {
    Q_OBJECT

 public:
    Q_INVOKABLE void visit(const QUrl &url) { visited = url; }

    QUrl visited;
};

TEST(WebPagesDeath, ReachTheBrowserAndStopOnWhatIsNoAddress) {
    Browser browser;
    QDesktopServices::setUrlHandler(QStringLiteral("https"), &browser, "visit");
    platform::QtWebPages().open("https://soporte.example/docencia-remota?aula=1#guía");
    QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
    EXPECT_EQ(browser.visited, QUrl(QStringLiteral("https://soporte.example/docencia-remota?aula=1#guía")));

    for (const char *address : {"", "https://[soporte", "https://a b.example/"})
        EXPECT_EXIT(platform::QtWebPages().open(address), ::testing::KilledBySignal(SIGABRT), "") << address;
}

}  // namespace

#include "web_pages_test.moc"
