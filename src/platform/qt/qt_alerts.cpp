#include "platform/qt/qt_alerts.h"

#include "platform/qt/alert_dialog.h"

#include <QApplication>
#include <QPointer>

#include <memory>

namespace platform {
namespace {

/// The window that the alert should stand over; none before the first window is shown.
QWidget *windowBehind() {
    if (QWidget *active = QApplication::activeWindow()) return active;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::Window) return window;
    }
    return nullptr;
}

}  // namespace

AlertAnswer QtAlerts::run(const Alert &alert) {
    auto dialog = std::make_unique<AlertDialog>(alert, QString::fromStdString(defaultTitle_), windowBehind());
    const QPointer<AlertDialog> alive(dialog.get());
    // A camera that fails while the alert is opening must find it raised, not behind the window.
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    dialog->exec();
    if (!alive) {  // its window was destroyed meanwhile and took the dialog with it
        static_cast<void>(dialog.release());
        return {alert.buttons.empty() ? 0 : alert.buttons.size() - 1, {}};
    }
    return dialog->answer();
}

}  // namespace platform
