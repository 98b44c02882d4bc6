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
    QWidget *waiting = QApplication::activeModalWidget();
    // One activation only: on Wayland the first would use up the token.
    if (window && waiting) raiseAboveOthers(*window);
    if (QWidget *front = waiting ? waiting : window) bringToFront(*front);
}

}  // namespace platform
