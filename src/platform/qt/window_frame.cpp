#include "platform/qt/window_frame.h"

#include <QEvent>
#include <QGuiApplication>
#include <QRect>
#include <QScreen>
#include <QSettings>
#include <QStringList>
#include <QWidget>
#include <algorithm>
#include <array>
#include <optional>

namespace platform {
namespace {

constexpr int kSaveDelayMs = 200;
// No desktop is larger; also keeps the rectangle arithmetic away from overflow.
constexpr int kLargestCoordinate = 100'000;
// How much of the title bar must be on a screen, so that the window can be dragged. Logical pixels.
constexpr int kTitleBarHeight = 24;
constexpr QSize kGrip{48, 12};

/// On Wayland a window neither learns nor chooses its position; only its size is remembered there.
bool positionIsKnown() {
    return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

/// "x y width height", then the same of the screen it was on, separated by blanks.
QString encoded(const QRect &frame, const QRect &screen) {
    return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8")
        .arg(frame.x())
        .arg(frame.y())
        .arg(frame.width())
        .arg(frame.height())
        .arg(screen.x())
        .arg(screen.y())
        .arg(screen.width())
        .arg(screen.height());
}

std::optional<QRect> decoded(const QString &text) {
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    std::array<int, 8> numbers{};
    if (words.size() != static_cast<qsizetype>(numbers.size())) return std::nullopt;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        bool isNumber = false;
        numbers[i] = words[static_cast<qsizetype>(i)].toInt(&isNumber);
        if (!isNumber || numbers[i] < -kLargestCoordinate || numbers[i] > kLargestCoordinate)
            return std::nullopt;
    }
    const QRect frame(numbers[0], numbers[1], numbers[2], numbers[3]);
    return frame.isValid() ? std::optional(frame) : std::nullopt;
}

bool canBeReached(const QRect &frame) {
    const QRect titleBar(frame.topLeft(), QSize(frame.width(), kTitleBarHeight));
    const QList<QScreen *> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&titleBar](const QScreen *screen) {
        const QRect visible = screen->availableGeometry() & titleBar;
        return visible.width() >= kGrip.width() && visible.height() >= kGrip.height();
    });
}

}  // namespace

WindowFrame::WindowFrame(QWidget *window, const QString &autosaveName)
    : QObject(window), window_(window), key_(QStringLiteral("NSWindow Frame ") + autosaveName) {
    saveTimer_.setSingleShot(true);
    saveTimer_.setInterval(kSaveDelayMs);
    connect(&saveTimer_, &QTimer::timeout, this, &WindowFrame::save);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &WindowFrame::saveIfPending);
    window->installEventFilter(this);
}

bool WindowFrame::restore() {
    const std::optional<QRect> frame = decoded(QSettings().value(key_).toString());
    if (!frame) return false;
    if (positionIsKnown()) {
        if (!canBeReached(*frame)) return false;
        window_->move(frame->topLeft());
    }
    window_->resize(frame->size());
    return true;
}

bool WindowFrame::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
            if (window_->isVisible()) saveTimer_.start();
            break;
        case QEvent::Hide:
            saveIfPending();
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

void WindowFrame::saveIfPending() {
    if (saveTimer_.isActive()) save();
}

void WindowFrame::save() {
    saveTimer_.stop();
    // A minimised or full-screen window has a frame that nobody chose.
    if (window_->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)) return;

    const QRect screen = window_->screen()->availableGeometry();
    QRect frame(window_->pos(), window_->size());
    if (!positionIsKnown()) frame.moveCenter(screen.center());
    QSettings settings;
    settings.setValue(key_, encoded(frame, screen));
    settings.sync();
}

}  // namespace platform
