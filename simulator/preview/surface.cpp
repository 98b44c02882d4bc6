#include "simulator/preview/surface.h"

#include <QPainterPathStroker>
#include <cmath>
#include <numbers>

namespace simulator::preview {

namespace {

constexpr double kMetresPerMillimetre = 0.001;
constexpr double kNearPlane = 0.05;  // metres
constexpr double kWidestHalfField = 30;

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

}  // namespace

Lens::Lens(QPainter &painter, const QRectF &picture, double pan, double tilt, double magnification)
    : painter_(&painter),
      picture_(picture),
      focalLength_(picture.width() / 2 / std::tan(radians(kWidestHalfField)) * magnification) {
    const double sinPan = std::sin(radians(pan));
    const double cosPan = std::cos(radians(pan));
    const double sinTilt = std::sin(radians(tilt));
    const double cosTilt = std::cos(radians(tilt));
    right_ = {cosPan, 0, -sinPan};
    up_ = {-sinPan * sinTilt, cosTilt, -cosPan * sinTilt};
    ahead_ = {sinPan * cosTilt, sinTilt, cosPan * cosTilt};
}

Vector Lens::projectDirection(Vector direction) const {
    const double depth = dot(ahead_, direction);
    const QPointF centre = picture_.center();
    return {centre.x() * depth + focalLength_ * dot(right_, direction),
            centre.y() * depth - focalLength_ * dot(up_, direction), depth};
}

Surface::Surface(const Lens &lens, Vector corner, Vector right, Vector down) : painter_(&lens.painter()) {
    const Vector x = lens.projectDirection(right * kMetresPerMillimetre);
    const Vector y = lens.projectDirection(down * kMetresPerMillimetre);
    const Vector o = lens.project(corner);
    toPicture_ = QTransform(x.x, x.y, x.z, y.x, y.y, y.z, o.x, o.y, o.z);

    const QRectF seen = lens.picture().adjusted(-2, -2, 2, 2);
    edges_ = {{{x.z, y.z, o.z - kNearPlane},
               {x.x - seen.left() * x.z, y.x - seen.left() * y.z, o.x - seen.left() * o.z},
               {seen.right() * x.z - x.x, seen.right() * y.z - y.x, seen.right() * o.z - o.x},
               {x.y - seen.top() * x.z, y.y - seen.top() * y.z, o.y - seen.top() * o.z},
               {seen.bottom() * x.z - x.y, seen.bottom() * y.z - y.y, seen.bottom() * o.z - o.y}}};
}

QPolygonF Surface::clippedBy(const Edge &edge, const QPolygonF &polygon) {
    QPolygonF kept;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QPointF from = polygon[i];
        const QPointF to = polygon[(i + 1) % polygon.size()];
        const double fromSide = edge.at(from);
        const double toSide = edge.at(to);
        if (fromSide >= 0) kept << from;
        if ((fromSide >= 0) != (toSide >= 0)) kept << from + (to - from) * (fromSide / (fromSide - toSide));
    }
    return kept;
}

QPolygonF Surface::clipped(QPolygonF polygon) const {
    for (const Edge &edge : edges_) polygon = clippedBy(edge, polygon);
    return polygon;
}

bool Surface::shows(const QRectF &rect) const {
    return !clipped(QPolygonF(rect)).isEmpty();
}

void Surface::fill(const QPainterPath &path, const QBrush &brush) const {
    const QRectF bounds = path.boundingRect();
    if (!shows(bounds)) return;

    // Only what reaches behind the lens must be cut by hand; the painter clips the rest to the picture.
    QPainterPath visible = path;
    const Edge &nearPlane = edges_.front();
    if (nearPlane.at(bounds.topLeft()) < 0 || nearPlane.at(bounds.topRight()) < 0 ||
        nearPlane.at(bounds.bottomLeft()) < 0 || nearPlane.at(bounds.bottomRight()) < 0) {
        visible = QPainterPath();
        visible.setFillRule(path.fillRule());
        visible.addPolygon(clipped(path.toFillPolygon()));
        visible.closeSubpath();
    }
    const QTransform before = painter_->transform();
    painter_->setTransform(toPicture_ * before);
    painter_->fillPath(visible, brush);
    painter_->setTransform(before);
}

void Surface::fill(const QRectF &rect, const QBrush &brush) const {
    QPainterPath path;
    path.addRect(rect);
    fill(path, brush);
}

void Surface::stroke(const QPainterPath &path, const QColor &colour, double width) const {
    if (!shows(path.boundingRect().adjusted(-width, -width, width, width))) return;
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    QPainterPath outline = stroker.createStroke(path);
    outline.setFillRule(Qt::WindingFill);
    fill(outline, colour);
}

void drawBox(const Lens &lens, Vector low, Vector high, const QColor &colour) {
    const Vector size = high - low;
    const auto face = [&lens](Vector corner, Vector right, Vector down, double width, double height,
                              const QColor &shade) {
        Surface(lens, corner, right, down).fill(QRectF(0, 0, width * 1000, height * 1000), shade);
    };
    // Only the faces turned towards the camera, which stands at the origin.
    if (high.y < 0) face({low.x, high.y, high.z}, {1, 0, 0}, {0, 0, -1}, size.x, size.z, colour.lighter(112));
    if (low.y > 0) face({low.x, low.y, high.z}, {1, 0, 0}, {0, 0, -1}, size.x, size.z, colour.darker(125));
    if (low.z > 0) face({low.x, high.y, low.z}, {1, 0, 0}, {0, -1, 0}, size.x, size.y, colour);
    if (high.z < 0) face({high.x, high.y, high.z}, {-1, 0, 0}, {0, -1, 0}, size.x, size.y, colour);
    if (low.x > 0) face({low.x, high.y, high.z}, {0, 0, -1}, {0, -1, 0}, size.z, size.y, colour.darker(118));
    if (high.x < 0) face({high.x, high.y, low.z}, {0, 0, 1}, {0, -1, 0}, size.z, size.y, colour.darker(118));
}

Surface facingSurface(const Lens &lens, Vector top, double width) {
    const double distance = std::hypot(top.x, top.z);
    const Vector right{top.z / distance, 0, -top.x / distance};
    return Surface(lens, top - right * (width / 2), right, {0, -1, 0});
}

}  // namespace simulator::preview
