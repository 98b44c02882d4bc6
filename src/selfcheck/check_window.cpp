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

#include "platform/services.h"
#include "selfcheck/order_trial.h"
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

CheckWindow::CheckWindow(std::shared_ptr<const usb::DeviceRegistry> registry, AccessInspector inspector,
                         QString version, QWidget *parent)
    : QWidget(parent),
      registry_(std::move(registry)),
      inspector_(std::move(inspector)),
      version_(std::move(version)) {
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
    connect(&nextStep_, &QTimer::timeout, this, &CheckWindow::continueWork);
    setVerdict({State::information, "Comprobando…", {}});
}

CheckWindow::~CheckWindow() = default;

void CheckWindow::addButtons(QVBoxLayout &column) {
    auto *row = new QHBoxLayout;
    checkAgain_ = new QPushButton(QStringLiteral("Comprobar de &nuevo"), this);
    checkAgain_->setObjectName(QStringLiteral("checkAgain"));
    tryOrder_ = new QPushButton(QStringLiteral("Probar una &orden"), this);
    tryOrder_->setObjectName(QStringLiteral("tryOrder"));
    copy_ = new QPushButton(QStringLiteral("Co&piar como texto"), this);
    copy_->setObjectName(QStringLiteral("copyText"));
    copied_ = new QLabel(QStringLiteral("Copiado. Péguelo en un mensaje."), this);
    copied_->setTextFormat(Qt::PlainText);
    auto *close = new QPushButton(QStringLiteral("&Cerrar"), this);
    close->setObjectName(QStringLiteral("closeWindow"));
    close->setShortcut(QKeySequence(Qt::Key_Escape));

    for (QPushButton *button : {checkAgain_, tryOrder_, copy_, close})
        button->setMinimumSize(button->sizeHint() + QSize(24, 8));
    row->addWidget(checkAgain_);
    row->addWidget(tryOrder_);
    row->addWidget(copy_);
    row->addStretch();
    row->addWidget(close);
    // On a line of its own: beside the buttons it would widen the window.
    copied_->hide();
    column.addWidget(copied_);
    column.addLayout(row);
    connect(checkAgain_, &QPushButton::clicked, this, &CheckWindow::check);
    connect(tryOrder_, &QPushButton::clicked, this, &CheckWindow::tryOrder);
    connect(copy_, &QPushButton::clicked, this, &CheckWindow::copyAsText);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
}

void CheckWindow::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    if (!hasChecked_) check();
    hasChecked_ = true;
}

void CheckWindow::check() {
    view_->show(std::vector<Section>{});
    const auto examination = std::make_shared<Examination>(registry_, inspector_);
    begin(
        "Comprobando…", [examination] { return examination->step(); },
        [this, examination] {
            facts_ = examination->facts();
            checkAgain_->setFocus();
        });
}

void CheckWindow::tryOrder() {
    std::string effect =
        "Se pedirá a la cámara que vaya adonde ya está: primero el giro y la inclinación, después el zoom. "
        "Hágalo con la cámara quieta; no debería moverse.";
    if (usesKernelDriver(facts_))
        effect +=
            " Si alguien la ha movido con su mando, puede volver a la última posición que le dio este "
            "equipo.";
    const auto answer = platform::services().alerts->run({.messageText = "¿Dar una orden a la cámara?",
                                                          .informativeText = effect,
                                                          .buttons = {"Dar la orden", "Cancelar"},
                                                          .windowTitle = std::nullopt,
                                                          .fieldText = std::nullopt});
    if (!answer.isFirstButton()) return;

    const auto trial = std::make_shared<OrderTrial>(registry_, facts_);
    begin(
        "Probando una orden…", [trial] { return trial->step(); },
        [this, trial] {
            facts_.trial = trial->facts();
            tryOrder_->setFocus();
        });
}

void CheckWindow::begin(const char *verdict, std::function<bool()> step, std::function<void()> finish) {
    step_ = std::move(step);
    finish_ = std::move(finish);
    for (QPushButton *button : {checkAgain_, tryOrder_, copy_}) button->setEnabled(false);
    copied_->hide();
    setVerdict({State::information, verdict, {}});
    nextStep_.start(kPaintingTime);
}

void CheckWindow::continueWork() {
    if (step_()) return nextStep_.start(kEventsBetweenSteps);
    step_ = nullptr;
    for (QPushButton *button : {checkAgain_, tryOrder_, copy_}) button->setEnabled(true);
    std::exchange(finish_, nullptr)();
    showReport();
}

void CheckWindow::showReport() {
    report_ = findings(facts_);
    checkedAt_ = QDateTime::currentDateTime().toString(QStringLiteral("dd/MM/yyyy HH:mm:ss"));
    setVerdict(report_.verdict);
    view_->show(report_.sections);
    const bool isMovable = facts_.panTilt.isOffered || facts_.zoom.isOffered;
    tryOrder_->setEnabled(!facts_.givenUp && isMovable);
}

void CheckWindow::copyAsText() {
    const std::string text = textOf(report_, checkedAt_.toStdString(), version_.toStdString());
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    copied_->show();
}

void CheckWindow::setVerdict(const Line &line) {
    if (verdict_ != nullptr) {
        verdictPlace_->removeWidget(verdict_);
        verdict_->hide();
        verdict_->setObjectName({});  // it lives until the event loop deletes it
        verdict_->deleteLater();
    }
    verdict_ = makeLineWidget(line, 1, this);
    verdict_->setObjectName(QStringLiteral("verdict"));
    verdictPlace_->addWidget(verdict_);
}

}  // namespace selfcheck
