#pragma once

#include <functional>

class QWidget;

namespace simulator {

/// Shows `preview` without activating it, and calls `next` once it is on the screen, or a second later where
/// no system says so. A window that `next` shows lies above the preview, and is the active one.
void showBelowTheNext(QWidget &preview, std::function<void()> next);

/// Puts the preview beside the window, wherever the screen has room for all of it: below, to the right, to
/// the left. On a small screen the window makes way upwards. Does nothing where the system places windows
/// itself (Wayland).
void placeBeside(QWidget &preview, QWidget &window);

}  // namespace simulator
