#pragma once

class QApplication;

namespace platform {

/// Prepares `application` for the desktop: its names, its windows' icon, Spanish, no quitting with the last
/// window, SIGPIPE ignored, and the real alerts, folders, panels, shell and web pages as the process's
/// services. Call it right after the QApplication was constructed. `title` heads alerts without a title.
void startDesktop(QApplication &application, const char *title);

}  // namespace platform
