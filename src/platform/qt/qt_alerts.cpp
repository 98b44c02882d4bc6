#include "platform/qt/qt_alerts.h"

#include "platform/qt/alert_dialog.h"
#include "platform/qt/window_order.h"

namespace platform {

AlertAnswer QtAlerts::run(const Alert &alert) {
    AlertDialog dialog(alert, QString::fromStdString(defaultTitle_), windowInFront());
    runInFront(dialog);
    return dialog.answer();
}

}  // namespace platform
