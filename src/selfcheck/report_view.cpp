#include "selfcheck/report_view.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "selfcheck/state_badge.h"

namespace selfcheck {
namespace {

QString text(const std::string &utf8) {
    return QString::fromStdString(utf8);
}

QLabel *makeLabel(const QString &content, qreal scale, bool bold, QWidget *parent) {
    auto *label = new QLabel(content, parent);
    // The name of a camera or a room may look like HTML.
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(bold);
    label->setFont(font);
    return label;
}

QWidget *makeSection(const Section &section, QWidget *parent) {
    auto *frame = new QFrame(parent);
    frame->setFrameShape(QFrame::StyledPanel);
    frame->setAutoFillBackground(true);
    frame->setBackgroundRole(QPalette::Base);
    frame->setAccessibleName(text(section.title + ": " + stateWord(section.state())));
    auto *column = new QVBoxLayout(frame);
    column->setSpacing(10);
    const State state = section.state();
    const std::string verdict = state == State::information ? "" : " — " + stateWord(state);
    column->addWidget(makeLabel(text(section.title + verdict), 1.15, true, frame));
    for (const Line &line : section.lines) column->addWidget(makeLineWidget(line, 0, frame));
    return frame;
}

}  // namespace

QWidget *makeLineWidget(const Line &line, int emphasis, QWidget *parent) {
    auto *widget = new QWidget(parent);
    const QString word = text(stateWord(line.state));
    widget->setObjectName(QStringLiteral("finding"));
    widget->setAccessibleName(word + QStringLiteral(": ") + text(line.text));
    widget->setAccessibleDescription(text(line.detail));

    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    const int lineHeight = widget->fontMetrics().height();
    row->addWidget(new StateBadge(line.state, emphasis > 0 ? lineHeight * 2 : lineHeight * 5 / 4, widget), 0,
                   Qt::AlignTop);

    auto *column = new QVBoxLayout;
    column->setSpacing(2);
    // Warnings and faults have the word beside the symbol. For the rest the section's title has it; the
    // verdict is a sentence that tells as much.
    const bool needsWord = emphasis == 0 && (line.state == State::warning || line.state == State::fault);
    const QString shown = needsWord ? word + QStringLiteral(". ") + text(line.text) : text(line.text);
    column->addWidget(makeLabel(shown, emphasis > 0 ? 1.3 : 1.0, emphasis > 0 || needsWord, widget));
    if (!line.detail.empty()) column->addWidget(makeLabel(text(line.detail), 1.0, false, widget));
    row->addLayout(column, 1);
    return widget;
}

ReportView::ReportView(QWidget *parent) : QScrollArea(parent) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The arrow keys scroll it.
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Resultados de la comprobación"));
}

void ReportView::show(const std::vector<Section> &sections) {
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 6, 0);
    column->setSpacing(12);
    for (const Section &section : sections) column->addWidget(makeSection(section, page));
    column->addStretch();
    setWidget(page);  // deletes the one before
}

}  // namespace selfcheck
