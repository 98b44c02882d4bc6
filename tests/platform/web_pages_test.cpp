#include "platform/qt/qt_web_pages.h"

#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QObject>
#include <QUrl>

#include <csignal>

namespace {

class Browser : public QObject {
    Q_OBJECT

 public:
    Browser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "visit"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

    Q_INVOKABLE void visit(const QUrl &url) { visited = url; }

    QUrl visited;
};

TEST(WebPages, ReachTheBrowser) {
    Browser browser;
    platform::QtWebPages().open("https://soporte.example/docencia-remota?aula=1#guía");
    EXPECT_EQ(browser.visited.host(), QStringLiteral("soporte.example"));
    EXPECT_EQ(browser.visited.fragment(), QStringLiteral("guía"));
}

TEST(WebPagesDeath, StopOnWhatIsNoAddress) {
    for (const char *address : {"", "https://[soporte", "https://a b.example/"})
        EXPECT_EXIT(platform::QtWebPages().open(address), ::testing::KilledBySignal(SIGABRT), "") << address;
}

}  // namespace

#include "web_pages_test.moc"
