#include "selfcheck/check_window.h"

#include <QClipboard>
#include <QDateTime>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>
#include <utility>

#include "selfcheck/report_text.h"
#include "selfcheck/report_view.h"

namespace selfcheck {
namespace {

// The window is painted first: a camera that does not answer would leave it blank meanwhile.
constexpr int kPaintingTime = 100;  // ms
constexpr int kEventsBetweenSteps = 10;

QFont enlarged(QFont font) {
    font.setPointSizeF(font.pointSizeF() * 1.2);
    return font;
}

}  // namespace

CheckWindow::CheckWindow(StartExamination start, QString version, QWidget *parent)
    : QWidget(parent), start_(std::move(start)), version_(std::move(version)) {
    setWindowTitle(QStringLiteral("¿Por qué no se mueve la cámara?"));
    setFont(enlarged(font()));
    resize(760, 720);

    auto *column = new QVBoxLayout(this);
    column->setSpacing(14);
    verdictPlace_ = new QVBoxLayout;
    column->addLayout(verdictPlace_);
    view_ = new ReportView(this);
    view_->setObjectName(QStringLiteral("report"));
    column->addWidget(view_, 1);
    addButtons(*column);

    nextStep_.setSingleShot(true);
    connect(&nextStep_, &QTimer::timeout, this, &CheckWindow::continueCheck);
    setVerdict({State::Information, "Comprobando…", {}});
}

CheckWindow::~CheckWindow() = default;

void CheckWindow::addButtons(QVBoxLayout &column) {
    auto *row = new QHBoxLayout;
    checkAgain_ = new QPushButton(QStringLiteral("Comprobar de &nuevo"), this);
    checkAgain_->setObjectName(QStringLiteral("checkAgain"));
    copy_ = new QPushButton(QStringLiteral("Co&piar como texto"), this);
    copy_->setObjectName(QStringLiteral("copyText"));
    copied_ = new QLabel(this);
    copied_->setTextFormat(Qt::PlainText);
    auto *close = new QPushButton(QStringLiteral("&Cerrar"), this);
    close->setObjectName(QStringLiteral("closeWindow"));
    close->setShortcut(QKeySequence(Qt::Key_Escape));

    for (QPushButton *button : {checkAgain_, copy_, close})
        button->setMinimumSize(button->sizeHint() + QSize(24, 8));
    row->addWidget(checkAgain_);
    row->addWidget(copy_);
    row->addWidget(copied_, 1);
    row->addWidget(close);
    column.addLayout(row);
    connect(checkAgain_, &QPushButton::clicked, this, &CheckWindow::check);
    connect(copy_, &QPushButton::clicked, this, &CheckWindow::copyAsText);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
}

void CheckWindow::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    if (!hasChecked_) check();
    hasChecked_ = true;
}

void CheckWindow::check() {
    examination_ = start_();
    checkAgain_->setEnabled(false);
    copy_->setEnabled(false);
    copied_->clear();
    view_->show(std::vector<Section>{});
    setVerdict({State::Information, "Comprobando…", {}});
    nextStep_.start(kPaintingTime);
}

void CheckWindow::continueCheck() {
    if (!examination_) return;
    if (examination_->step()) return nextStep_.start(kEventsBetweenSteps);
    finishCheck();
}

void CheckWindow::finishCheck() {
    report_ = findings(examination_->facts());
    examination_.reset();
    checkedAt_ = QDateTime::currentDateTime().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss"));
    setVerdict(report_.verdict);
    view_->show(report_.sections);
    checkAgain_->setEnabled(true);
    copy_->setEnabled(true);
    checkAgain_->setFocus();
}

void CheckWindow::copyAsText() {
    const std::string text = textOf(report_, checkedAt_.toStdString(), version_.toStdString());
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    copied_->setText(QStringLiteral("Copiado. Péguelo en un mensaje."));
}

void CheckWindow::setVerdict(const Line &line) {
    if (verdict_ != nullptr) {
        verdictPlace_->removeWidget(verdict_);
        verdict_->hide();
        verdict_->setObjectName({});  // it lives until the event loop comes round
        verdict_->deleteLater();
    }
    verdict_ = makeLineWidget(line, 1, this);
    verdict_->setObjectName(QStringLiteral("verdict"));
    verdictPlace_->addWidget(verdict_);
}

}  // namespace selfcheck
