#pragma once

#include <QColor>
#include <QPainterPath>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "simulator/preview/surface.h"

namespace simulator::preview {

/// Reads a path of capital one-letter commands and numbers separated by blanks: M x y, L x y, Q cx cy x y,
/// C ax ay bx by x y, Z; E cx cy rx ry is an ellipse and R x y w h r a rounded rectangle. What is not
/// understood ends the path.
[[nodiscard]] QPainterPath readPath(std::string_view text);

/// One shape of a drawing. Stroke 0 fills the path; else it is the width of the line.
struct Shape {
    QRgb colour;
    double stroke;
    std::string_view path;
};

/// A drawing in millimetres, read once and drawn many times.
class Artwork {
 public:
    Artwork(std::initializer_list<Shape> shapes);
    void draw(const Surface &surface, QPointF offset = {}) const;

 private:
    struct Piece {
        QColor colour;
        double stroke;
        QPainterPath path;
    };
    std::vector<Piece> pieces_;
};

}  // namespace simulator::preview
