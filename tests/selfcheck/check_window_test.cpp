// The page as a technician uses it.
#include "selfcheck/check_window.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QRegularExpression>
#include <algorithm>

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
    void openAndFinish() {
        open();
        finish();
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

TEST_F(CheckWindowTest, IsOnTheScreenBeforeTheCameraIsAskedAndRestsAfterwards) {
    open();
    EXPECT_EQ(window_->windowTitle(), QStringLiteral("¿Por qué no se mueve la cámara?"));
    EXPECT_EQ(verdict(), QStringLiteral("Dato: Comprobando…"));
    EXPECT_TRUE(camera().transfers().empty());
    EXPECT_EQ(offered(), "Cerrar. ");
    finish();
    EXPECT_TRUE(verdict().startsWith(QStringLiteral("Dato: La cámara está conectada")));
    EXPECT_EQ(offered(), "Comprobar de nuevo. Probar una orden. Copiar como texto. Cerrar. ");
    const auto shown = findings();
    QTest::qWait(50);
    EXPECT_EQ(findings(), shown) << "nothing runs on";
}

TEST_F(CheckWindowTest, CopiesThePageWithDateAndVersion) {
    openAndFinish();
    QApplication::clipboard()->clear();
    click("copyText");
    const QString copied = QApplication::clipboard()->text();
    EXPECT_TRUE(copied.contains(QRegularExpression(
        QStringLiteral("^Fecha: \\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d\\nVersión: 7\\.5$"),
        QRegularExpression::MultilineOption)))
        << copied.toStdString();
    ASSERT_FALSE(findings().isEmpty());
    for (const QWidget *finding : findings())
        EXPECT_TRUE(copied.contains(finding->accessibleName().section(QStringLiteral(": "), 1)))
            << finding->accessibleName().toStdString();
}

TEST_F(CheckWindowTest, GivesAnOrderOnlyAfterAskingAndTellsItsOutcome) {
    openAndFinish();
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
    EXPECT_TRUE(std::ranges::any_of(findings(), [](const QWidget *finding) {
        return finding->accessibleName() == QStringLiteral("Bien: Zoom: la cámara ha aceptado la orden");
    }));

    bus().unplug(room_->camera);
    click("checkAgain");
    finish();
    EXPECT_TRUE(verdict().startsWith(QStringLiteral("Fallo: No se ve ninguna cámara")));
    EXPECT_EQ(offered(), "Comprobar de nuevo. Copiar como texto. Cerrar. ");
}

TEST_F(CheckWindowTest, ClosesInTheMiddleOfACheck) {
    open();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !camera().transfers().empty(); }));
    ASSERT_TRUE(window_->isBusy());
    click("closeWindow");
    EXPECT_FALSE(window_->isVisible());
    window_.reset();
    QTest::qWait(50);
    EXPECT_EQ(bus().openHandles(), 0);
}

TEST_F(CheckWindowTest, WarningsAndFaultsHaveTheirWordAndNoTextIsTakenForMarkup) {
    access_->access = usb::Outcome::denied;
    bus().answerOpenWith(room_->camera, usb::Outcome::denied);
    std::filesystem::create_directories(store() / "Norte" / "<b>Rota.presets");
    openAndFinish();
    QStringList words;
    for (const QWidget *finding : findings()) {
        const QString name = finding->accessibleName();
        const QString shown = finding->findChild<QLabel *>()->text();
        const QString word = name.section(QStringLiteral(": "), 0, 0);
        const bool needsWord = word == QStringLiteral("Fallo") || word == QStringLiteral("Aviso");
        EXPECT_EQ(shown, (needsWord ? word + QStringLiteral(". ") : QString()) + name.mid(word.size() + 2));
        words.append(word);
    }
    words.removeDuplicates();
    words.sort();
    EXPECT_EQ(words.join(u' '), QStringLiteral("Aviso Bien Dato Fallo"));
    for (const QLabel *label : window_->findChildren<QLabel *>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

}  // namespace
