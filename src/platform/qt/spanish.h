#pragma once

class QApplication;

namespace platform {

/// Makes Qt's own texts (buttons, file panels, dates) Spanish whatever the user's locale, and gives
/// the C library its neutral number format back, which QApplication's constructor sets to the locale's. Call
/// it right after the QApplication was constructed, before any widget. The application owns what it installs.
void speakSpanish(QApplication &application);

}  // namespace platform
