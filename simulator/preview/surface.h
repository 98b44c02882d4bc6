#pragma once

#include <QBrush>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <array>

namespace simulator::preview {

/// A point or a direction in the room, in metres. The camera stands at the origin; x to its right, y up and z
/// ahead when pan and tilt are 0.
struct Vector {
    double x = 0;
    double y = 0;
    double z = 0;
};

[[nodiscard]] constexpr Vector operator+(Vector a, Vector b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
[[nodiscard]] constexpr Vector operator-(Vector a, Vector b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
[[nodiscard]] constexpr Vector operator*(Vector a, double k) {
    return {a.x * k, a.y * k, a.z * k};
}
[[nodiscard]] constexpr double dot(Vector a, Vector b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The lens: a perspective projection of the room onto `picture`, painted with `painter`.
class Lens {
 public:
    /// Angles in degrees; `magnification` 1 is the widest field.
    Lens(QPainter &painter, const QRectF &picture, double pan, double tilt, double magnification);

    /// A point of the picture in homogeneous form (divide by z); z is the distance ahead of the lens.
    [[nodiscard]] Vector project(Vector point) const { return projectDirection(point); }
    [[nodiscard]] Vector projectDirection(Vector direction) const;
    [[nodiscard]] QPainter &painter() const { return *painter_; }
    [[nodiscard]] const QRectF &picture() const { return picture_; }

 private:
    QPainter *painter_;
    QRectF picture_;
    double focalLength_;  // in pixels
    Vector right_, up_, ahead_;
};

/// A flat piece of the room to draw on, in millimetres: x along `right`, y along `down`, from `corner`.
class Surface {
 public:
    Surface(const Lens &lens, Vector corner, Vector right, Vector down);

    void fill(const QPainterPath &path, const QBrush &brush) const;
    void fill(const QRectF &rect, const QBrush &brush) const;
    void stroke(const QPainterPath &path, const QColor &colour, double width) const;

    /// Whether any of `rect` is in the picture.
    [[nodiscard]] bool shows(const QRectF &rect) const;

 private:
    /// a*x + b*y + c >= 0 on the visible side.
    struct Edge {
        double a, b, c;
        [[nodiscard]] double at(QPointF p) const { return a * p.x() + b * p.y() + c; }
    };
    [[nodiscard]] QPolygonF clipped(QPolygonF polygon) const;
    [[nodiscard]] static QPolygonF clippedBy(const Edge &edge, const QPolygonF &polygon);

    QPainter *painter_;
    QTransform toPicture_;
    std::array<Edge, 5> edges_;  // near plane first, then the picture's sides
};

/// A box with upright sides between two opposite corners; its top is lighter than its sides.
void drawBox(const Lens &lens, Vector low, Vector high, const QColor &colour);

/// An upright surface at `top` that faces the camera, `width` metres wide and centred.
[[nodiscard]] Surface facingSurface(const Lens &lens, Vector top, double width);

}  // namespace simulator::preview
