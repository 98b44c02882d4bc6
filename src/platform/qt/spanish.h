#pragma once

class QApplication;

namespace platform {

/// Makes Qt's own texts (buttons, file panels, dates) Spanish whatever the user's locale, and keeps the
/// number formats of the C library neutral, which QApplication's constructor adapts to the locale. Call it
/// right after the QApplication was constructed, before any widget. Children of the application own what it
/// installs.
void speakSpanish(QApplication &application);

}  // namespace platform
