#pragma once

class QApplication;

namespace platform {

/// Prepares `application` for the desktop: its names, the icon of all its windows, Spanish, no quitting with
/// the last window, no end by SIGPIPE, and the real alerts, folders, panels, shell and web pages as the
/// process's services. Call it right after the QApplication was constructed. `title` heads the alerts that
/// bring none of their own.
void startDesktop(QApplication &application, const char *title);

}  // namespace platform
