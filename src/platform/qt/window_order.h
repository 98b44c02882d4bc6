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

/// Shows the application-modal `dialog` in front and runs it until it is answered. Its parent must
/// outlive it; the user cannot close that window meanwhile.
void runInFront(QDialog &dialog);

/// Brings the program to the front: `window` (may be null) and above it the alert or panel that is open,
/// modal or not, which then gets the focus.
void bringProgramToFront(QWidget *window);

}  // namespace platform
