#include "selfcheck/state_badge.h"

#include <QPainter>
#include <QPolygonF>

namespace selfcheck {
namespace {

// Readable on light and dark windows. The sign on it is white, and black on amber.
QColor colourOf(State state) {
    switch (state) {
        case State::good:
            return QColor(0x1e, 0x8e, 0x3e);
        case State::warning:
            return QColor(0xf2, 0xa6, 0x0d);
        case State::fault:
            return QColor(0xd0, 0x2b, 0x20);
        case State::information:
            break;
    }
    return QColor(0x6b, 0x74, 0x80);
}

// Shapes and signs are drawn in a square of one unit a side.
void paintShape(QPainter &painter, State state) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colourOf(state));
    if (state == State::warning)
        painter.drawPolygon(QPolygonF({{0.5, 0.04}, {0.98, 0.92}, {0.02, 0.92}}));
    else if (state == State::fault)
        painter.drawRoundedRect(QRectF(0.06, 0.06, 0.88, 0.88), 0.14, 0.14);
    else
        painter.drawEllipse(QRectF(0.04, 0.04, 0.92, 0.92));
}

void paintSign(QPainter &painter, State state) {
    painter.setBrush(Qt::NoBrush);
    const QColor ink = state == State::warning ? QColor(Qt::black) : QColor(Qt::white);
    painter.setPen(QPen(ink, 0.12, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (state) {
        case State::good:
            painter.drawPolyline(QPolygonF({{0.28, 0.52}, {0.44, 0.68}, {0.73, 0.34}}));
            break;
        case State::warning:
            painter.drawLine(QPointF(0.5, 0.38), QPointF(0.5, 0.6));
            painter.drawLine(QPointF(0.5, 0.775), QPointF(0.5, 0.78));
            break;
        case State::fault:
            painter.drawLine(QPointF(0.32, 0.32), QPointF(0.68, 0.68));
            painter.drawLine(QPointF(0.68, 0.32), QPointF(0.32, 0.68));
            break;
        case State::information:
            painter.drawLine(QPointF(0.5, 0.47), QPointF(0.5, 0.74));
            painter.drawLine(QPointF(0.5, 0.275), QPointF(0.5, 0.28));
            break;
    }
}

}  // namespace

StateBadge::StateBadge(State state, int size, QWidget *parent) : QWidget(parent), state_(state) {
    setFixedSize(size, size);
    setAccessibleName(QString::fromStdString(stateWord(state)));
}

void StateBadge::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width(), height());
    paintShape(painter, state_);
    paintSign(painter, state_);
}

}  // namespace selfcheck
