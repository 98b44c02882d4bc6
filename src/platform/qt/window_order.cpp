#include "platform/qt/window_order.h"

#include <QApplication>
#include <QDialog>
#include <QWidget>

namespace platform {
namespace {

void raiseAboveOthers(QWidget &window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
}

/// The alert or panel that is open: the modal one, else one that leaves the window usable and may cover it.
QWidget *openDialog() {
    if (QWidget *modal = QApplication::activeModalWidget()) return modal;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && qobject_cast<QDialog *>(window)) return window;
    }
    return nullptr;
}

}  // namespace

QWidget *windowInFront() {
    if (QWidget *active = QApplication::activeWindow()) return active;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() == Qt::Window) return window;
    }
    return nullptr;
}

void bringToFront(QWidget &window) {
    raiseAboveOthers(window);
    window.activateWindow();
}

void runInFront(QDialog &dialog) {
    // A camera that fails while the dialog is opening must find it raised, not behind the window.
    bringToFront(dialog);
    dialog.exec();
}

void bringProgramToFront(QWidget *window) {
    QWidget *dialog = openDialog();
    // One activation only: on Wayland the first would use up the token.
    if (window && dialog) raiseAboveOthers(*window);
    if (QWidget *front = dialog ? dialog : window) bringToFront(*front);
}

}  // namespace platform
