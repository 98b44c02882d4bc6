// The page as a technician uses it.
#include "selfcheck/check_window.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QRegularExpression>

#include "selfcheck_bench.h"
#include "support/answered_alerts.h"
#include "support/window_user.h"

namespace {

class CheckWindowTest : public SelfcheckBench, protected support::WindowUser {
 protected:
    void open() {
        window_ = std::make_unique<selfcheck::CheckWindow>(
            room_->bus, [this](std::uint32_t) { return access_; }, QStringLiteral("7.5"));
        window_->show();
    }
    void finish() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window_->isBusy(); }));
    }

    [[nodiscard]] QWidget *window() const override { return window_.get(); }
    QString verdict() { return find<QWidget>("verdict")->accessibleName(); }
    QList<QWidget *> findings() { return window_->findChildren<QWidget *>(QStringLiteral("finding")); }
    /// The words of the enabled buttons.
    std::string offered() {
        std::string names;
        for (const char *name : {"checkAgain", "tryOrder", "copyText", "closeWindow"})
            if (button(name)->isEnabled()) names += button(name)->text().remove(u'&').toStdString() + ". ";
        return names;
    }

    std::unique_ptr<selfcheck::CheckWindow> window_;
};

TEST_F(CheckWindowTest, IsOnTheScreenBeforeTheCameraIsAskedAndCopiesWhatItThenShows) {
    access_->access = usb::Outcome::denied;
    putScenes("Norte/<b>Sala.presets", {});
    put("Norte/Rota.presets", "");
    open();
    EXPECT_EQ(verdict(), QStringLiteral("Dato: Comprobando…"));
    EXPECT_EQ(asked(), 0U);
    EXPECT_EQ(offered(), "Cerrar. ");
    finish();
    EXPECT_TRUE(verdict().startsWith(QStringLiteral("Aviso: La cámara está conectada, pero")));
    EXPECT_EQ(offered(), "Comprobar de nuevo. Probar una orden. Copiar como texto. Cerrar. ");
    QApplication::clipboard()->clear();
    click("copyText");
    const QString copied = QApplication::clipboard()->text();
    EXPECT_TRUE(copied.contains(QRegularExpression(
        QStringLiteral("\nFecha: \\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d\nVersión: 7\\.5\n"))));

    const auto shown = findings();
    for (const QWidget *finding : shown) {
        const QString word = finding->accessibleName().section(QStringLiteral(": "), 0, 0);
        const QString text = finding->accessibleName().section(QStringLiteral(": "), 1);
        const bool needsWord = word == QStringLiteral("Fallo") || word == QStringLiteral("Aviso");
        const auto labels = finding->findChildren<QLabel *>();
        EXPECT_EQ(labels[0]->text(), needsWord ? word + QStringLiteral(". ") + text : text);
        EXPECT_EQ(finding->accessibleDescription(), labels.size() > 1 ? labels[1]->text() : QString());
        EXPECT_TRUE(copied.contains(text)) << text.toStdString();
    }
    EXPECT_GE(shown.size(), 10);
    for (const QLabel *label : window_->findChildren<QLabel *>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    QTest::qWait(50);
    EXPECT_EQ(findings(), shown) << "nothing runs on";
}

TEST_F(CheckWindowTest, GivesAnOrderOnlyAfterAskingAndTellsItsOutcome) {
    open();
    finish();
    support::AnsweredAlerts alerts;
    alerts.cancel();
    click("tryOrder");
    EXPECT_FALSE(window_->isBusy());
    ASSERT_EQ(alerts.shown().size(), 1U);
    EXPECT_NE(alerts.shown()[0].informativeText.find("la última posición que le dio"), std::string::npos);
    EXPECT_EQ(room_->panTiltSets() + room_->zoomSets(), 0);

    alerts.accept();
    click("tryOrder");
    EXPECT_EQ(offered(), "Cerrar. ");
    finish();
    EXPECT_EQ(room_->panTiltSets() + room_->zoomSets(), 2);
    EXPECT_TRUE(verdict().startsWith(QStringLiteral("Bien: La cámara obedece")));
    bus().unplug(room_->camera);
    click("checkAgain");
    finish();
    EXPECT_TRUE(verdict().startsWith(QStringLiteral("Fallo: No se ve ninguna cámara")));
    EXPECT_EQ(offered(), "Comprobar de nuevo. Copiar como texto. Cerrar. ");

    click("checkAgain");
    click("closeWindow");
    EXPECT_FALSE(window_->isVisible());
    window_.reset();
    QTest::qWait(150);  // nothing of the check goes on
}

}  // namespace
