#include "platform/qt/accessible_role.h"

#include <QAccessibleWidget>

namespace platform {

void setAccessibleRole(QWidget &widget, QAccessible::Role role) {
    // Qt's cache owns the interface, and drops it with the widget.
    QAccessible::registerAccessibleInterface(new QAccessibleWidget(&widget, role));
}

}  // namespace platform
