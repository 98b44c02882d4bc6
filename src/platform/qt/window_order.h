#pragma once

class QDialog;
class QWidget;

namespace platform {

/// The window that a new alert or panel should stand over: the active one, else one that is shown. Null
/// before the first window is shown.
[[nodiscard]] QWidget *windowInFront();

/// Shows `window` above the others, not minimised and with the keyboard's focus, as far as the desktop
/// allows.
void bringToFront(QWidget &window);

/// Shows the application-modal `dialog` in front and runs it until it is answered. Its parent, a window behind
/// it, must outlive it; a person cannot close that one meanwhile.
void runInFront(QDialog &dialog);

/// Brings the whole program to the front: `window`, if there is one, and above it the alert or panel that is
/// waiting for an answer, if there is one, which then gets the focus.
void bringProgramToFront(QWidget *window);

}  // namespace platform
