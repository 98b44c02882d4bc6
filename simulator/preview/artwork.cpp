#include "simulator/preview/artwork.h"

#include <charconv>

namespace simulator::preview {

namespace {

/// Takes blank-separated words off the front of a text.
class Words {
 public:
    explicit Words(std::string_view text) : rest_(text) {}

    char command() {
        skipBlanks();
        if (rest_.empty()) return '\0';
        const char letter = rest_.front();
        rest_.remove_prefix(1);
        return letter;
    }

    double number() {
        skipBlanks();
        double value = 0;
        const auto result = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
        rest_.remove_prefix(static_cast<std::size_t>(result.ptr - rest_.data()));
        return value;
    }

    QPointF point() {
        const double x = number();
        return {x, number()};
    }

 private:
    void skipBlanks() {
        while (!rest_.empty() && rest_.front() == ' ') rest_.remove_prefix(1);
    }

    std::string_view rest_;
};

/// False: the command is unknown or the text is at its end.
bool addCommand(QPainterPath &path, Words &words) {
    switch (words.command()) {
        case 'M':
            path.moveTo(words.point());
            return true;
        case 'L':
            path.lineTo(words.point());
            return true;
        case 'Z':
            path.closeSubpath();
            return true;
        case 'Q': {
            const QPointF control = words.point();
            path.quadTo(control, words.point());
            return true;
        }
        case 'C': {
            const QPointF first = words.point();
            const QPointF second = words.point();
            path.cubicTo(first, second, words.point());
            return true;
        }
        case 'E': {
            const QPointF centre = words.point();
            const QPointF radii = words.point();
            path.addEllipse(centre, radii.x(), radii.y());
            return true;
        }
        case 'R': {
            const QPointF corner = words.point();
            const QPointF size = words.point();
            const double radius = words.number();
            path.addRoundedRect(QRectF(corner, QSizeF(size.x(), size.y())), radius, radius);
            return true;
        }
        default:
            return false;
    }
}

}  // namespace

QPainterPath readPath(std::string_view text) {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    Words words(text);
    while (addCommand(path, words)) {
    }
    return path;
}

Artwork::Artwork(std::initializer_list<Shape> shapes) {
    for (const Shape &shape : shapes)
        pieces_.push_back({QColor::fromRgba(shape.colour), shape.stroke, readPath(shape.path)});
}

void Artwork::draw(const Surface &surface, QPointF offset) const {
    for (const Piece &piece : pieces_) {
        const QPainterPath path = offset.isNull() ? piece.path : piece.path.translated(offset);
        if (piece.stroke > 0)
            surface.stroke(path, piece.colour, piece.stroke);
        else
            surface.fill(path, piece.colour);
    }
}

}  // namespace simulator::preview
