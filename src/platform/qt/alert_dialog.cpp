#include "platform/qt/alert_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace platform {
namespace {

// Logical pixels.
constexpr int kNarrowestColumn = 260;
constexpr int kWidestColumn = 440;
constexpr QSize kFieldSize{200, 24};
constexpr int kIconSize = 48;

constexpr double kInformativeFontScale = 0.92;
constexpr qsizetype kLongestWord = 40;

/// A word that is wider than the text column has no place to break; zero-width spaces give it some.
QString breakable(const QString &text) {
    QString result;
    qsizetype run = 0;
    for (const QChar character : text) {
        run = character.isSpace() ? 0 : run + 1;
        if (run > kLongestWord && !character.isLowSurrogate() && !character.isMark()) {
            result += QChar(0x200B);
            run = 1;
        }
        result += character;
    }
    return result;
}

int widthOfWidestLine(const QString &text, const QFont &font) {
    const QFontMetrics metrics(font);
    int widest = 0;
    for (const QString &line : text.split(u'\n')) widest = std::max(widest, metrics.horizontalAdvance(line));
    return widest;
}

/// A label of a fixed width, as high as its wrapped text needs.
QLabel *makeTextLabel(const QString &text, const QFont &font, int width, QWidget *parent) {
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    label->setWordWrap(true);
    label->setText(breakable(text));
    label->setAccessibleName(text);
    label->setFixedWidth(width);
    label->setFixedHeight(label->heightForWidth(width));
    return label;
}

QFont scaled(QFont font, double factor) {
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * factor);
    } else {
        font.setPixelSize(std::max(1, qRound(font.pixelSize() * factor)));
    }
    return font;
}

}  // namespace

AlertDialog::AlertDialog(const Alert &alert, const QString &defaultTitle, QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("alert"));
    setWindowTitle(alert.windowTitle ? QString::fromStdString(*alert.windowTitle) : defaultTitle);
    setWindowModality(Qt::ApplicationModal);
    // The save panel stays on top too: under it an alert would freeze the program for no visible reason.
    setWindowFlag(Qt::WindowStaysOnTopHint);
    // At start-up an alert can be the only window; closing it must not end the application.
    setAttribute(Qt::WA_QuitOnClose, false);

    auto *outer = new QHBoxLayout(this);
    auto *icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(kIconSize));
    icon->setAccessibleName(QStringLiteral("Aviso"));
    outer->addWidget(icon, 0, Qt::AlignTop);
    outer->addSpacing(8);

    auto *column = new QVBoxLayout;
    outer->addLayout(column);
    addTexts(alert, *column);
    addField(alert, *column);
    column->addSpacing(8);
    addButtons(alert, *column);
    outer->setSizeConstraint(QLayout::SetFixedSize);
}

void AlertDialog::addTexts(const Alert &alert, QBoxLayout &column) {
    const QString message = QString::fromStdString(alert.messageText);
    const QString informative = QString::fromStdString(alert.informativeText);
    QFont messageFont = font();
    messageFont.setBold(true);
    const QFont informativeFont = scaled(font(), kInformativeFontScale);

    // One pixel more than measured: a label that gets exactly its text's width may wrap it.
    const int natural =
        std::max(widthOfWidestLine(message, messageFont), widthOfWidestLine(informative, informativeFont)) +
        1;
    const int width = std::clamp(natural, kNarrowestColumn, kWidestColumn);

    QLabel *messageLabel = makeTextLabel(message, messageFont, width, this);
    messageLabel->setObjectName(QStringLiteral("alertMessage"));
    column.addWidget(messageLabel);
    if (informative.isEmpty()) return;

    QLabel *informativeLabel = makeTextLabel(informative, informativeFont, width, this);
    informativeLabel->setObjectName(QStringLiteral("alertInformative"));
    column.addWidget(informativeLabel);
}

void AlertDialog::addField(const Alert &alert, QBoxLayout &column) {
    if (!alert.fieldText) return;
    field_ = new QLineEdit(QString::fromStdString(*alert.fieldText), this);
    field_->setObjectName(QStringLiteral("alertField"));
    field_->setAccessibleName(QString::fromStdString(alert.messageText));
    field_->setFixedSize(kFieldSize);
    field_->selectAll();
    column.addSpacing(4);
    column.addWidget(field_);
    field_->setFocus();
}

void AlertDialog::addButtons(const Alert &alert, QBoxLayout &column) {
    std::vector<std::string> titles = alert.buttons;
    if (titles.empty()) titles.emplace_back("Aceptar");  // without a button nobody could leave the alert

    auto *box = new QDialogButtonBox(this);
    for (std::size_t i = 0; i < titles.size(); ++i) {
        const QString title = QString::fromStdString(titles[i]);
        QPushButton *button =
            box->addButton(title, i == 0 ? QDialogButtonBox::AcceptRole : QDialogButtonBox::RejectRole);
        button->setObjectName(QStringLiteral("alertButton%1").arg(i));
        button->setAccessibleName(title);
        connect(button, &QPushButton::clicked, this, [this, i] { finish(i); });
        buttons_.push_back(button);
        if (titles.size() == 1 || titles[i] == "Cancelar") escapeButton_ = i;
    }
    buttons_.front()->setDefault(true);
    answered_ = escapeButton_.value_or(titles.size() - 1);
    column.addWidget(box);
}

AlertAnswer AlertDialog::answer() const {
    return {answered_, field_ ? field_->text().toStdString() : std::string()};
}

void AlertDialog::reject() {
    if (escapeButton_) finish(*escapeButton_);
}

void AlertDialog::finish(std::size_t button) {
    answered_ = button;
    done(button == 0 ? Accepted : Rejected);
}

}  // namespace platform
