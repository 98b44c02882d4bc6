// The real alerts, answered as a person does.
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
#include <stdexcept>
#include <string>

namespace {

using platform::Alert;
using platform::AlertAnswer;

/// Runs `alert` and does `act` with its dialog, which must answer it.
AlertAnswer answerOf(const Alert &alert, const std::function<void(QDialog &)> &act) {
    bool answered = false;
    QTimer::singleShot(0, [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog) return;
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        act(*dialog);
        answered = !dialog->isVisible();
        if (!answered) dialog->done(QDialog::Rejected);
    });
    const AlertAnswer answer = platform::QtAlerts("Cámara de pruebas").run(alert);
    EXPECT_TRUE(answered);
    return answer;
}

template <typename Widget>
Widget &part(QDialog &dialog, const char *name) {
    auto *found = dialog.findChild<Widget *>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("the alert has no ") + name);
    return *found;
}

std::function<void(QDialog &)> press(const QList<Qt::Key> &keys) {
    return [keys](QDialog &dialog) {
        for (const Qt::Key key : keys) QTest::keyClick(dialog.focusWidget(), key);
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
        {"Return, two buttons", kConfirm, press({Qt::Key_Return}), 0},
        {"Escape, two buttons", kConfirm, press({Qt::Key_Escape}), 1},
        // Whoever has moved to "Cancelar" and presses Return must not confirm a deletion.
        {"Tab, Return", kConfirm, press({Qt::Key_Tab, Qt::Key_Return}), 1},
        {"clicked second", kConfirm, click("alertButton1"), 1},
        {"Escape, one button", kNotice, press({Qt::Key_Escape}), 0},
        {"Escape in the field", kQuestion, press({Qt::Key_Escape}), 1},
        {"Escape answers the title, not the place", reversed, press({Qt::Key_Escape}), 0},
        {"Return answers the first, whatever its title", reversed, press({Qt::Key_Return}), 0},
    };
    for (const auto &row : rows) EXPECT_EQ(answerOf(row.alert, row.act).button, row.button) << row.name;
}

TEST(Alerts, GiveTheFieldsTextAsItIs) {
    EXPECT_EQ(answerOf(kQuestion, press({Qt::Key_Return})).fieldText, " Aula 1 ");

    const auto typed = answerOf(kQuestion, [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Cámara de pruebas"));
        auto *field = qobject_cast<QLineEdit *>(dialog.focusWidget());
        ASSERT_NE(field, nullptr) << "whoever types at once types into the field";
        EXPECT_EQ(field->accessibleName(), QStringLiteral("Introduzca el nombre"));
        EXPECT_EQ(field->size(), QSize(200, 24));
        field->clear();
        field->insert(QStringLiteral("  Ñandú"));  // QTest types ASCII only
        QTest::keyClicks(field, QStringLiteral(" 7  "));
        QTest::keyClick(field, Qt::Key_Return);
    });
    EXPECT_EQ(typed.fieldText, "  Ñandú 7  ");
    EXPECT_TRUE(typed.isFirstButton());
}

TEST(Alerts, ShowTheirTextsPlainlyAndWhole) {
    const std::string message = "<b>Aula</b> &amp; " + std::string(300, 'x');
    const Alert alert{message, "Línea 1\nLínea 2", {"Aceptar"}, "Versión 1.2", {}};
    static_cast<void>(answerOf(alert, [&](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Versión 1.2"));
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

}  // namespace
