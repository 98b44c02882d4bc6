#pragma once

#include <QWidget>

#include "selfcheck/findings.h"

namespace selfcheck {

/// The symbol of a state: a green disc with a tick, an amber triangle with "!", a red square with a cross, a
/// grey disc with "i". Shape and sign differ as well as the colour.
class StateBadge final : public QWidget {
 public:
    /// `size`: side of the square, in device-independent pixels.
    StateBadge(State state, int size, QWidget *parent);

 protected:
    void paintEvent(QPaintEvent *event) override;

 private:
    State state_;
};

}  // namespace selfcheck
