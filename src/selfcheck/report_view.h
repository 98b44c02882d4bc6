#pragma once

#include <QScrollArea>

#include "selfcheck/findings.h"

class QVBoxLayout;

namespace selfcheck {

/// Draws the sections of a report below each other; scrolls where they do not fit.
class ReportView final : public QScrollArea {
 public:
    explicit ReportView(QWidget *parent);

    /// Replaces what is drawn.
    void show(const std::vector<Section> &sections);
    using QScrollArea::show;
};

/// One finding: its symbol, its text, and the state in words for those who see no symbol. `emphasis` enlarges
/// it: 0 for a finding among others, 1 for the verdict.
[[nodiscard]] QWidget *makeLineWidget(const Line &line, int emphasis, QWidget *parent);

}  // namespace selfcheck
