// The real alerts, answered the way a person does.
#include "platform/qt/qt_alerts.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

using platform::Alert;
using platform::AlertAnswer;

/// Runs `alert` and does `act` with its dialog. An alert that `act` leaves open counts as unanswered.
std::optional<AlertAnswer> answerOf(const Alert &alert, const std::function<void(QDialog &)> &act) {
    bool unanswered = false;
    bool acted = false;
    QTimer::singleShot(0, [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog) return;
        acted = true;
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        act(*dialog);
        if (dialog->isVisible()) {
            unanswered = true;
            dialog->done(QDialog::Rejected);
        }
    });
    const AlertAnswer answer = platform::QtAlerts("Cámara de pruebas").run(alert);
    EXPECT_TRUE(acted) << "no modal alert was shown";
    return unanswered ? std::nullopt : std::optional(answer);
}

template <typename Widget>
Widget &part(QDialog &dialog, const char *name) {
    auto *found = dialog.findChild<Widget *>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("the alert has no ") + name);
    return *found;
}

std::function<void(QDialog &)> press(Qt::Key key) {
    return [key](QDialog &dialog) {
        QTest::keyClick(dialog.focusWidget() ? dialog.focusWidget() : &dialog, key);
    };
}

std::function<void(QDialog &)> click(const char *button) {
    return
        [button](QDialog &dialog) { QTest::mouseClick(&part<QPushButton>(dialog, button), Qt::LeftButton); };
}

const std::function<void(QDialog &)> kClose = [](QDialog &dialog) { dialog.close(); };

const Alert kConfirm{"¿Seguro?", "", {"Confirmar", "Cancelar"}, {}, {}};
const Alert kNotice{"Importación", "Hecho", {"Aceptar"}, {}, {}};
const Alert kQuestion{"Introduzca el nombre", "", {"OK", "Cancelar"}, {}, " Aula 1 "};

TEST(Alerts, AnswerKeysClicksAndClosing) {
    const Alert reversed{"¿Seguro?", "", {"Cancelar", "Borrar"}, {}, {}};
    const struct {
        const char *name;
        const Alert &alert;
        std::function<void(QDialog &)> act;
        std::size_t button;
    } rows[] = {
        {"Return, two buttons", kConfirm, press(Qt::Key_Return), 0},
        {"Enter of the number pad", kConfirm, press(Qt::Key_Enter), 0},
        {"Escape, two buttons", kConfirm, press(Qt::Key_Escape), 1},
        {"closed, two buttons", kConfirm, kClose, 1},
        {"clicked first", kConfirm, click("alertButton0"), 0},
        {"clicked second", kConfirm, click("alertButton1"), 1},
        {"Escape, one button", kNotice, press(Qt::Key_Escape), 0},
        {"closed, one button", kNotice, kClose, 0},
        {"Return in the field", kQuestion, press(Qt::Key_Return), 0},
        {"Escape in the field", kQuestion, press(Qt::Key_Escape), 1},
        {"Escape answers the title, not the place", reversed, press(Qt::Key_Escape), 0},
        {"Return answers the first, whatever its title", reversed, press(Qt::Key_Return), 0},
    };
    for (const auto &row : rows) {
        const auto answer = answerOf(row.alert, row.act);
        ASSERT_TRUE(answer) << row.name;
        EXPECT_EQ(answer->button, row.button) << row.name;
    }
}

// Whoever has moved to "Cancelar" and presses Return must not confirm a deletion.
TEST(Alerts, TabReachesTheSecondButton) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        const auto answer = answerOf(kConfirm, [key](QDialog &dialog) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            QTest::keyClick(dialog.focusWidget(), key);
        });
        ASSERT_TRUE(answer);
        EXPECT_EQ(answer->button, 1U);
    }
}

TEST(Alerts, StayOpenOnEscapeWhenNoButtonMeansIt) {
    const Alert choice{"¿Cuál?", "", {"Izquierda", "Derecha"}, {}, {}};
    EXPECT_FALSE(answerOf(choice, press(Qt::Key_Escape)));
    EXPECT_FALSE(answerOf(choice, kClose));
    EXPECT_TRUE(answerOf(choice, click("alertButton1")));
    EXPECT_TRUE(answerOf({"Sin botones", "", {}, {}, {}}, click("alertButton0")));
}

TEST(Alerts, GiveTheFieldsTextAsItIs) {
    const auto untouched = answerOf(kQuestion, press(Qt::Key_Return));
    ASSERT_TRUE(untouched);
    EXPECT_EQ(untouched->fieldText, " Aula 1 ");

    const auto typed = answerOf(kQuestion, [](QDialog &dialog) {
        auto *field = qobject_cast<QLineEdit *>(dialog.focusWidget());
        ASSERT_NE(field, nullptr) << "whoever types at once types into the field";
        EXPECT_EQ(field->objectName(), QStringLiteral("alertField"));
        EXPECT_EQ(field->size(), QSize(200, 24));
        field->clear();
        QTest::keyClicks(field, QStringLiteral("  "));
        field->insert(QStringLiteral("Ñandú"));  // QTest types ASCII only
        QTest::keyClicks(field, QStringLiteral(" 7  "));
        QTest::keyClick(field, Qt::Key_Return);
    });
    ASSERT_TRUE(typed);
    EXPECT_EQ(typed->fieldText, "  Ñandú 7  ");
    EXPECT_TRUE(typed->isFirstButton());
}

TEST(Alerts, ShowTheirTextsPlainlyAndWhole) {
    const std::string message = "<b>Aula</b> &amp; " + std::string(300, 'x');
    const Alert alert{message, "Línea 1\nLínea 2", {"Aceptar"}, {}, {}};
    static_cast<void>(answerOf(alert, [&](QDialog &dialog) {
        auto &label = part<QLabel>(dialog, "alertMessage");
        EXPECT_EQ(label.textFormat(), Qt::PlainText);
        EXPECT_EQ(label.accessibleName().toStdString(), message);
        EXPECT_EQ(label.text().remove(QChar(0x200B)).toStdString(), message);
        const QRect needed = label.fontMetrics().boundingRect(QRect(0, 0, label.width(), 10000),
                                                              Qt::TextWordWrap, label.text());
        EXPECT_LE(needed.width(), label.width()) << "a long word is broken, not clipped";
        EXPECT_LE(needed.height(), label.height());
        EXPECT_EQ(part<QLabel>(dialog, "alertInformative").textFormat(), Qt::PlainText);
        kClose(dialog);
    }));
}

TEST(Alerts, NameTheirWindowAndField) {
    static_cast<void>(answerOf(kQuestion, [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Cámara de pruebas"));
        EXPECT_EQ(part<QLineEdit>(dialog, "alertField").accessibleName(),
                  QStringLiteral("Introduzca el nombre"));
        EXPECT_EQ(dialog.windowModality(), Qt::ApplicationModal);
        kClose(dialog);
    }));
    static_cast<void>(answerOf({"Acerca de", "", {"Aceptar"}, "Versión 1.2", {}}, [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Versión 1.2"));
        kClose(dialog);
    }));
}

TEST(Alerts, SurviveTheEndOfTheWindowBehind) {
    auto window = std::make_unique<QWidget>();
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    bool ended = false;
    QTimer::singleShot(0, [&] {
        ended = QApplication::activeModalWidget() != nullptr;
        window.reset();
    });
    const AlertAnswer answer = platform::QtAlerts("Cámara de pruebas").run(kConfirm);
    EXPECT_TRUE(ended);
    EXPECT_FALSE(answer.isFirstButton()) << "nobody confirmed anything";
}

}  // namespace
