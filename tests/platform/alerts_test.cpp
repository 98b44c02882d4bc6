// The real alerts, answered as a person does.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <string>

#include "platform/qt/qt_alerts.h"

namespace {

using platform::Alert;
using Act = std::function<void(QDialog &)>;

/// Runs `alert` and does `act` with its dialog, which must answer it.
platform::AlertAnswer answerOf(const Alert &alert, const Act &act) {
    bool answered = false;
    QTimer::singleShot(0, [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog) return;
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
        act(*dialog);
        answered = !dialog->isVisible();
        if (!answered) dialog->done(QDialog::Rejected);
    });
    const auto answer = platform::QtAlerts("Cámara de pruebas").run(alert);
    EXPECT_TRUE(answered);
    return answer;
}

Act press(const QList<Qt::Key> &keys) {
    return [keys](QDialog &dialog) {
        for (const Qt::Key key : keys) QTest::keyClick(dialog.focusWidget(), key);
    };
}

TEST(Alerts, AnswerKeysClicksAndClosing) {
    const Alert confirm{"¿Seguro?", "", {"Confirmar", "Cancelar"}, {}, {}};
    const Alert reversed{"¿Seguro?", "", {"Cancelar", "Borrar"}, {}, {}};
    const Alert undecided{"¿Seguro?", "", {"Borrar", "Guardar"}, {}, {}};
    const Alert wordless{"Hecho", "", {}, {}, {}};
    const Act clickSecond = [](QDialog &dialog) {
        QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("alertButton1")), Qt::LeftButton);
    };
    const Act vanish = [](QDialog &dialog) { dialog.done(QDialog::Rejected); };
    const struct {
        const char *name;
        const Alert &alert;
        Act act;
        std::size_t button;
    } rows[] = {
        {"Return", confirm, press({Qt::Key_Return}), 0},
        {"Escape", confirm, press({Qt::Key_Escape}), 1},
        // Whoever has moved to "Cancelar" and presses Return must not confirm a deletion.
        {"Tab, Return", confirm, press({Qt::Key_Tab, Qt::Key_Return}), 1},
        {"clicked second", confirm, clickSecond, 1},
        {"Escape, one button", wordless, press({Qt::Key_Escape}), 0},
        {"Escape answers the title, not the place", reversed, press({Qt::Key_Escape}), 0},
        {"Return answers the first, whatever its title", reversed, press({Qt::Key_Return}), 0},
        {"the window goes, and no button is there for that", undecided, vanish, 1},
    };
    for (const auto &row : rows) EXPECT_EQ(answerOf(row.alert, row.act).button, row.button) << row.name;
}

TEST(Alerts, GiveTheFieldsTextAsItIs) {
    const Alert question{"Introduzca el nombre", "", {"OK", "Cancelar"}, {}, " Aula 1 "};
    const auto typed = answerOf(question, [](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Cámara de pruebas"));
        auto *field = qobject_cast<QLineEdit *>(dialog.focusWidget());
        ASSERT_NE(field, nullptr) << "whoever types at once types into the field";
        EXPECT_EQ(field->selectedText(), QStringLiteral(" Aula 1 "));
        field->insert(QStringLiteral("  Ñandú"));  // QTest types ASCII only
        QTest::keyClicks(field, QStringLiteral(" 7  "));
        QTest::keyClick(field, Qt::Key_Return);
    });
    EXPECT_EQ(typed.fieldText, "  Ñandú 7  ");
    EXPECT_TRUE(typed.isFirstButton());
    EXPECT_EQ(answerOf(question, press({Qt::Key_Escape})).button, 1);
}

TEST(Alerts, ShowTheirTextsPlainlyAndWhole) {
    const std::string message = "<b>Aula</b> &amp; " + std::string(300, 'x');
    const Alert alert{message, "<i>Línea 1</i>\nLínea 2", {}, "Versión 1.2", {}};
    const QWidget notShownYet;
    static_cast<void>(answerOf(alert, [&](QDialog &dialog) {
        EXPECT_EQ(dialog.parentWidget(), nullptr);
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Versión 1.2"));
        for (const char *name : {"alertMessage", "alertInformative"}) {
            auto *label = dialog.findChild<QLabel *>(QLatin1String(name));
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
            EXPECT_EQ(label->text().remove(QChar(0x200B)), label->accessibleName());
            const QRect needed = label->fontMetrics().boundingRect(QRect(0, 0, label->width(), 10000),
                                                                   Qt::TextWordWrap, label->text());
            EXPECT_LE(needed.width(), label->width()) << "a long word is broken, not clipped";
            EXPECT_LE(needed.height(), label->height());
        }
        EXPECT_FALSE(
            dialog.findChild<QLabel *>(QStringLiteral("alertInformative"))->text().contains(QChar(0x200B)));
        const auto *button = dialog.findChild<QPushButton *>(QStringLiteral("alertButton0"));
        EXPECT_EQ(button->text(), QStringLiteral("Aceptar"));
        dialog.close();
    }));
}

}  // namespace
