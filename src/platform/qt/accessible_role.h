#pragma once

#include <QAccessible>

class QWidget;

namespace platform {

/// Tells screen readers what `widget` is; they take a plain QWidget for a filler. Once per widget.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);

}  // namespace platform
