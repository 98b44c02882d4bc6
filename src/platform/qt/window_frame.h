#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QWidget;

namespace platform {

/// Remembers a window's frame (position with its decoration, size without) from one run to the next, in the
/// user's state of the application: QSettings under the organization and application names, which must be set
/// before; key "NSWindow Frame " + autosave name.
///
/// A child of the window. A move or resize of the visible window is on disk a moment later, not only at the
/// end: a program that ends abruptly keeps the frame.
class WindowFrame final : public QObject {
    Q_OBJECT

 public:
    WindowFrame(QWidget *window, const QString &autosaveName);

    /// Applies the remembered frame at once; the window's size limits win. False, and the window left as it
    /// is, when none is remembered, when what is stored is not a frame, or when its title bar is out of reach
    /// on every screen.
    bool restore();

    bool eventFilter(QObject *watched, QEvent *event) override;

 private:
    void save();
    void saveIfPending();

    QWidget *window_;
    QString key_;
    QTimer saveTimer_;
};

}  // namespace platform
