// The page as a technician uses it.
#include "selfcheck/check_window.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QRegularExpression>
#include <algorithm>

#include "scenes/scene_file.h"
#include "selfcheck_bench.h"
#include "support/answered_alerts.h"
#include "support/window_user.h"

namespace {

using selfcheck::CheckWindow;

class CheckWindowTest : public SelfcheckBench, protected support::WindowUser {
 protected:
    CheckWindow &open() {
        window_ = std::make_unique<CheckWindow>(bus_, inspector(), QStringLiteral("7.5"));
        window_->show();
        return *window_;
    }

    void finish() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window_->isBusy(); }));
    }

    [[nodiscard]] QWidget *window() const override { return window_.get(); }
    QString verdict() { return window_->findChild<QWidget *>(QStringLiteral("verdict"))->accessibleName(); }

    QList<QWidget *> findings() { return window_->findChildren<QWidget *>(QStringLiteral("finding")); }

    std::unique_ptr<CheckWindow> window_;
};

TEST_F(CheckWindowTest, IsOnTheScreenBeforeTheCameraIsAsked) {
    const auto camera = plug();
    open();
    EXPECT_EQ(window_->windowTitle(), QStringLiteral("¿Por qué no se mueve la cámara?"));
    EXPECT_EQ(verdict(), QStringLiteral("Dato: Comprobando…"));
    EXPECT_TRUE(camera->transfers().empty());
    EXPECT_FALSE(button("copyText")->isEnabled());
    finish();
    EXPECT_TRUE(verdict().startsWith(QStringLiteral("Dato: La cámara está conectada")));
    EXPECT_TRUE(button("copyText")->isEnabled());
}

TEST_F(CheckWindowTest, CopiesThePageWithDateAndVersion) {
    plug();
    open();
    finish();
    QApplication::clipboard()->clear();
    click("copyText");
    const QString copied = QApplication::clipboard()->text();
    EXPECT_TRUE(copied.contains(QRegularExpression(
        QStringLiteral("^Fecha: \\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d\\nVersión: 7\\.5$"),
        QRegularExpression::MultilineOption)))
        << copied.toStdString();
    ASSERT_FALSE(findings().isEmpty());
    for (const QWidget *finding : findings()) {
        const QString text = finding->accessibleName().section(QStringLiteral(": "), 1);
        EXPECT_TRUE(copied.contains(text)) << text.toStdString();
    }
}

TEST_F(CheckWindowTest, GivesAnOrderOnlyAfterAskingAndTellsItsOutcome) {
    const auto camera = plug();
    open();
    finish();
    support::AnsweredAlerts alerts;
    alerts.cancel();
    click("tryOrder");
    EXPECT_FALSE(window_->isBusy());
    ASSERT_EQ(alerts.shown().size(), 1U);
    EXPECT_THAT(alerts.shown()[0].informativeText, testing::HasSubstr("la última posición que le dio"));
    EXPECT_EQ(camera->count(1, 0x0D, 0x01) + camera->count(1, 0x0B, 0x01), 0);

    alerts.accept();
    click("tryOrder");
    EXPECT_FALSE(button("tryOrder")->isEnabled());
    finish();
    EXPECT_EQ(camera->count(1, 0x0D, 0x01) + camera->count(1, 0x0B, 0x01), 2);
    EXPECT_TRUE(verdict().startsWith(QStringLiteral("Bien: La cámara obedece")));
    EXPECT_TRUE(std::ranges::any_of(findings(), [](const QWidget *finding) {
        return finding->accessibleName() == QStringLiteral("Bien: Zoom: la cámara ha aceptado la orden");
    }));

    bus_->unplug(camera);
    click("checkAgain");
    finish();
    EXPECT_TRUE(verdict().startsWith(QStringLiteral("Fallo: No se ve ninguna cámara")));
    EXPECT_FALSE(button("tryOrder")->isEnabled());
}

TEST_F(CheckWindowTest, ClosesInTheMiddleOfACheck) {
    const auto camera = plug();
    open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !camera->transfers().empty(); }));
    ASSERT_TRUE(window_->isBusy());
    click("closeWindow");
    EXPECT_FALSE(window_->isVisible());
    window_.reset();
    QTest::qWait(50);
    EXPECT_EQ(bus_->openHandles(), 0);
}

TEST_F(CheckWindowTest, SaysEverythingInSpanishAndByName) {
    access_->access = usb::Outcome::denied;
    const auto camera = plug();
    bus_->answerOpenWith(camera, usb::Outcome::denied);
    std::filesystem::create_directories(documents_.path() / "Presets" / "Norte" / "Rota.presets");
    open();
    finish();
    // Words that a system's or a library's own message would bring along.
    const QRegularExpression english(
        QStringLiteral("\\b(the|not|file|error|denied|permission|cannot|camera|check|unknown)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    const auto labels = window_->findChildren<QLabel *>();
    ASSERT_FALSE(labels.isEmpty());
    for (const QLabel *label : labels) {
        EXPECT_FALSE(label->text().contains(english)) << label->text().toStdString();
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
    }
    for (const char *name : {"checkAgain", "tryOrder", "copyText", "closeWindow"}) {
        ASSERT_NE(button(name), nullptr) << name;
        EXPECT_FALSE(button(name)->text().isEmpty()) << name;
    }
    ASSERT_FALSE(findings().isEmpty());
    for (const QWidget *finding : findings())
        EXPECT_TRUE(finding->accessibleName().contains(
            QRegularExpression(QStringLiteral("^(Bien|Aviso|Fallo|Dato): .+"))))
            << finding->accessibleName().toStdString();
}

}  // namespace
