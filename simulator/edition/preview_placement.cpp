#include "simulator/edition/preview_placement.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <utility>

namespace simulator {

namespace {

constexpr std::chrono::seconds kLongestWait{1};

/// Calls `next` once: when the system first asks for the window to be drawn, or when that takes too long. The
/// window that it watches owns it.
class FirstExposure : public QObject {
 public:
    FirstExposure(QWindow &window, std::function<void()> next) : QObject(&window), next_(std::move(next)) {
        window.installEventFilter(this);
        QTimer::singleShot(kLongestWait, this, [this] { finish(); });
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        // The window draws itself while it handles this event; the timer fires after that.
        if (event->type() == QEvent::Expose) QTimer::singleShot(0, this, [this] { finish(); });
        return QObject::eventFilter(watched, event);
    }

 private:
    void finish() {
        if (const auto next = std::exchange(next_, nullptr)) next();
    }

    std::function<void()> next_;
};

}  // namespace

void showBelowTheNext(QWidget &preview, std::function<void()> next) {
    preview.setAttribute(Qt::WA_ShowWithoutActivating);
    preview.show();
    new FirstExposure(*preview.windowHandle(), std::move(next));
}

void placeBeside(QWidget &preview, QWidget &window) {
    if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) return;

    const QRect screen = window.screen()->availableGeometry();
    const QRect frame = window.frameGeometry();
    const QSize size = preview.frameGeometry().size();
    for (const QPoint corner :
         {QPoint(frame.left(), frame.bottom() + 1), QPoint(frame.right() + 1, frame.top()),
          QPoint(frame.left() - size.width(), frame.top())}) {
        if (screen.contains(QRect(corner, size))) return preview.move(corner);
    }
    window.move(frame.left(), screen.top());
    preview.move(frame.left(), std::min(screen.top() + frame.height(), screen.bottom() + 1 - size.height()));
}

}  // namespace simulator
