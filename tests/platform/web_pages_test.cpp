#include <gtest/gtest.h>

#include <QDesktopServices>
#include <QObject>
#include <QTest>
#include <QUrl>
#include <csignal>

#include "platform/qt/help.h"
#include "platform/qt/qt_web_pages.h"
#include "support/answered_alerts.h"
#include "surroundings.h"

namespace {

class Browser : public QObject {
    Q_OBJECT

 public:
    explicit Browser(const char *scheme) : scheme_(QLatin1String(scheme)) {
        QDesktopServices::setUrlHandler(scheme_, this, "visit");
    }
    ~Browser() override { QDesktopServices::unsetUrlHandler(scheme_); }
    Q_INVOKABLE void visit(const QUrl &url) { visited = url; }

    QUrl visited;

 private:
    QString scheme_;
};

TEST(WebPagesDeath, ReachTheBrowserAndStopOnWhatIsNoAddress) {
    Browser browser("https");
    platform::QtWebPages().open("https://soporte.example/docencia-remota?aula=1#guía");
    EXPECT_EQ(browser.visited, QUrl(QStringLiteral("https://soporte.example/docencia-remota?aula=1#guía")));

    for (const char *address : {"", "https://[soporte", "https://a b.example/"})
        EXPECT_EXIT(platform::QtWebPages().open(address), ::testing::KilledBySignal(SIGABRT), "") << address;
}

using HelpTest = FolderTest;

TEST_F(HelpTest, ManualAndSelfCheckAreFoundFromTheProgramsFolderAndMissedAloud) {
    const Browser browser("file");
    support::AnsweredAlerts alerts;
    auto services = platform::services();
    services.webPages = std::make_shared<platform::QtWebPages>();
    platform::installServices(services);
    const std::string page = "El #1 a 100 %/share/zelvoria-camara/manual.html";
    const auto programs = QString::fromStdString(path("El #1 a 100 %/bin"));
    const ScopedVariable searched("PATH", path("searched").c_str());

    platform::openManual(programs);
    platform::startSelfCheck(programs);
    ASSERT_EQ(alerts.shown().size(), 2u);

    write(page, "");
    platform::openManual(programs);
    EXPECT_EQ(browser.visited.toLocalFile().toStdString(), path(page));
    for (const char *folder : {"searched", "El #1 a 100 %/bin"}) {
        const std::string program = folder + std::string("/zelvoria-diagnostico");
        write(program, "#!/bin/sh\n: >\"$0.started\"\n");
        std::filesystem::permissions(path(program), std::filesystem::perms::owner_all);
        platform::startSelfCheck(programs);
        EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(path(program + ".started")); }))
            << folder;
    }
    EXPECT_EQ(alerts.shown().size(), 2u);
}

}  // namespace

#include "web_pages_test.moc"
