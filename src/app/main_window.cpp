#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>

#include "platform/qt/window_order.h"
#include "ui/content_widget.h"

namespace app {
namespace {

// Asked for at the first start; the content's limits win.
constexpr QSize kContentSize(480, 300);

}  // namespace

MainWindow::MainWindow(AppDelegate &delegate) : menu_(delegate), frame_(this, QStringLiteral("Main Window")) {
    setObjectName(QStringLiteral("mainWindow"));
    qApp->installEventFilter(this);
    menuBar()->setNativeMenuBar(false);
    menu_.fill(*menuBar());
    limitSize();
    resize(kContentSize.expandedTo(minimumSize()).boundedTo(maximumSize()));
}

void MainWindow::centre() {
    setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size(), screen()->availableGeometry()));
}

void MainWindow::restoreFrame() {
    frame_.restore();
}

void MainWindow::setContent(ContentView &view) {
    setCentralWidget(new ui::ContentWidget(view, this));
}

void MainWindow::makeKeyAndOrderFront() {
    platform::bringToFront(*this);
}

QWidget *MainWindow::onScreen() {
    return strip_ && strip_->isVisible() ? static_cast<QWidget *>(strip_.get()) : this;
}

void MainWindow::closeEvent(QCloseEvent *event) {
    event->accept();
    if (quitting_) return;
    if (!strip_) strip_ = std::make_unique<MenuStrip>(menu_);
    strip_->showAt(pos());
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Quit) quitting_ = true;
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    // The menu bar's height moves with the font and the style.
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) limitSize();
}

void MainWindow::limitSize() {
    const int height = ui::ContentWidget::kHeight + menuBar()->sizeHint().height();
    setMinimumSize(ui::ContentWidget::kMinimumWidth, height);
    setMaximumSize(ui::ContentWidget::kMaximumWidth, height);
}

}  // namespace app
