// Floor, ceiling, front and back wall.

#include <QLinearGradient>
#include <QRadialGradient>

#include "simulator/preview/artwork.h"
#include "simulator/preview/room_parts.h"

namespace simulator::preview {

namespace {

using namespace room;

constexpr double kWidth = (kRight - kLeft) * 1000;      // millimetres
constexpr double kDepth = (kFront - kBack) * 1000;      // millimetres
constexpr double kHeight = (kCeiling - kFloor) * 1000;  // millimetres

QLinearGradient vertical(double height, const QColor &top, const QColor &bottom) {
    QLinearGradient shade(0, 0, 0, height);
    shade.setColorAt(0, top);
    shade.setColorAt(1, bottom);
    return shade;
}

void drawPlanks(const Surface &floor) {
    constexpr double kPlank = 300;
    int row = 0;
    for (double x = 0; x < kWidth; x += kPlank, ++row) {
        if (row % 3 == 1) floor.fill(QRectF(x, 0, kPlank, kDepth), QColor(120, 78, 40, 18));
        floor.fill(QRectF(x, 0, 10, kDepth), QColor(96, 60, 30, 60));
        for (double y = (row * 730) % 1900; y < kDepth; y += 1900)
            floor.fill(QRectF(x, y, kPlank, 10), QColor(96, 60, 30, 60));
    }
}

/// What the sun draws on the floor through the windows.
void drawSunPatches(const Surface &floor) {
    for (const double y : {3100.0, 5400.0, 7000.0}) {
        QPainterPath patch;
        patch.addPolygon(QPolygonF({{10700, y}, {10700, y + 1500}, {7600, y + 2300}, {7600, y + 800}}));
        QLinearGradient light(10700, 0, 7600, 0);
        light.setColorAt(0, QColor(255, 236, 180, 110));
        light.setColorAt(1, QColor(255, 236, 180, 25));
        floor.fill(patch, light);
    }
}

void drawLamp(const Surface &ceiling, QPointF centre) {
    QPainterPath halo;
    halo.addEllipse(centre, 1100, 1900);
    QRadialGradient glow(QPointF(0.5, 0.5), 0.5);
    glow.setCoordinateMode(QGradient::ObjectMode);
    glow.setColorAt(0, QColor(255, 246, 205, 190));
    glow.setColorAt(1, QColor(255, 246, 205, 0));
    ceiling.fill(halo, glow);

    static const Artwork lamp{
        {qRgb(0xC9, 0xBF, 0xA8), 0, "R -260 -1060 520 2120 30"},
        {qRgb(0xFF, 0xFD, 0xF2), 0, "R -225 -1025 450 2050 20"},
        {qRgb(0xFF, 0xF3, 0xC4), 0, "R -150 -970 110 1940 40 R 40 -970 110 1940 40"},
        {qRgba(0xB8, 0xA9, 0x80, 120), 8, "M -225 -512 L 225 -512 M -225 0 L 225 0 M -225 512 L 225 512"},
    };
    lamp.draw(ceiling, centre);
}

}  // namespace

void drawFloor(const Lens &lens) {
    const Surface floor(lens, {kLeft, kFloor, kFront}, {1, 0, 0}, {0, 0, -1});
    const QRectF whole(0, 0, kWidth, kDepth);
    if (!floor.shows(whole)) return;
    floor.fill(whole, vertical(kDepth, QColor(0xC0, 0x93, 0x64), QColor(0xA6, 0x7A, 0x4F)));
    drawPlanks(floor);
    drawSunPatches(floor);
}

void drawCeiling(const Lens &lens) {
    const Surface ceiling(lens, {kLeft, kCeiling, kBack}, {1, 0, 0}, {0, 0, 1});
    const QRectF whole(0, 0, kWidth, kDepth);
    if (!ceiling.shows(whole)) return;

    ceiling.fill(whole, vertical(kDepth, QColor(0xE3, 0xDA, 0xC8), QColor(0xEE, 0xE7, 0xD8)));
    for (double x = 600; x < kWidth; x += 1200)
        ceiling.fill(QRectF(x, 0, 12, kDepth), QColor(150, 136, 110, 70));
    for (double y = 550; y < kDepth; y += 1200)
        ceiling.fill(QRectF(0, y, kWidth, 12), QColor(150, 136, 110, 70));
    for (const double x : {2400.0, 4800.0, 7200.0, 9600.0})
        for (const double y : {1750.0, 5350.0, 8950.0, 12550.0}) drawLamp(ceiling, {x, y});

    // A smoke detector and an air outlet, so that the view straight up is not blank.
    static const Artwork fittings{
        {qRgba(90, 76, 52, 40), 0, "E 6010 8420 130 130"},
        {qRgb(0xFB, 0xF8, 0xF0), 0, "E 6000 8400 120 120"},
        {qRgb(0xD9, 0xD2, 0xC2), 8, "E 6000 8400 80 80"},
        {qRgb(0xC9, 0x4C, 0x3F), 0, "E 6045 8360 11 11"},
        {qRgb(0xFA, 0xF6, 0xEC), 0, "R 5700 6500 600 600 30"},
        {qRgb(0xBD, 0xB3, 0x9D), 18, "R 5770 6570 460 460 20 R 5850 6650 300 300 16 R 5930 6730 140 140 12"},
    };
    fittings.draw(ceiling);
}

void drawFrontWall(const Lens &lens) {
    const Surface wall(lens, {kLeft, kCeiling, kFront}, {1, 0, 0}, {0, -1, 0});
    const QRectF whole(0, 0, kWidth, kHeight);
    if (!wall.shows(whole)) return;
    wall.fill(whole, vertical(kHeight, QColor(0xF4, 0xEA, 0xD6), QColor(0xE6, 0xD8, 0xBD)));

    // Lamps wash the wall above the board.
    QRadialGradient wash(QPointF(6000, 200), 5200);
    wash.setColorAt(0, QColor(255, 250, 228, 150));
    wash.setColorAt(1, QColor(255, 250, 228, 0));
    wall.fill(whole, wash);
    wall.fill(QRectF(0, 0, kWidth, 70), QColor(0xFB, 0xF6, 0xEA));
    wall.fill(QRectF(0, kHeight - 160, kWidth, 160), QColor(0x8C, 0x66, 0x45));
    wall.fill(QRectF(0, kHeight - 172, kWidth, 14), QColor(0xA9, 0x80, 0x5C));
}

void drawBackWall(const Lens &lens) {
    const Surface wall(lens, {kRight, kCeiling, kBack}, {-1, 0, 0}, {0, -1, 0});
    const QRectF whole(0, 0, kWidth, kHeight);
    if (!wall.shows(whole)) return;
    wall.fill(whole, vertical(kHeight, QColor(0xB5, 0xC4, 0xB8), QColor(0x8F, 0xA5, 0x9A)));

    // Acoustic panels of wooden slats.
    for (const double left : {700.0, 4500.0, 8300.0}) {
        wall.fill(QRectF(left, 300, 3000, 1500), QColor(0x9A, 0x6C, 0x44));
        for (double x = left + 30; x < left + 2960; x += 120)
            wall.fill(QRectF(x, 320, 84, 1460), QColor(0xC4, 0x94, 0x64));
        wall.fill(QRectF(left, 300, 3000, 40), QColor(0x7F, 0x57, 0x35));
    }
    wall.fill(QRectF(0, 0, kWidth, 70), QColor(0xFB, 0xF6, 0xEA));
}

}  // namespace simulator::preview
