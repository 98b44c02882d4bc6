// What stands between the camera and the front wall.

#include <QLinearGradient>

#include "simulator/preview/artwork.h"
#include "simulator/preview/room_parts.h"

namespace simulator::preview {

namespace {

constexpr QRgb kOak = qRgb(0xB4, 0x80, 0x50);

const Artwork &slide() {
    static const Artwork drawing{
        {qRgb(0xFD, 0xFC, 0xF8), 0, "R 0 0 3000 1690 0"},
        {qRgb(0x1F, 0x4E, 0x66), 0, "R 0 0 3000 330 0"},
        {qRgb(0xE8, 0x9C, 0x4B), 0, "R 0 330 3000 28 0"},
        // Points
        {qRgb(0xE8, 0x9C, 0x4B), 0, "E 220 570 34 34 E 220 790 34 34 E 220 1010 34 34"},
        {qRgb(0x5A, 0x6E, 0x78), 0, "R 310 535 1010 62 28 R 310 755 860 62 28 R 310 975 940 62 28"},
        {qRgb(0xC2, 0xCC, 0xCF), 0, "R 310 630 700 36 18 R 310 850 780 36 18 R 310 1070 560 36 18"},
        // A wave
        {qRgb(0x8F, 0xB5, 0xBF), 10, "M 180 1400 L 1420 1400"},
        {qRgb(0x2F, 0x8F, 0x8A), 24,
         "M 200 1400 C 300 1200 400 1200 500 1400 C 600 1600 700 1600 800 1400 "
         "C 900 1200 1000 1200 1100 1400 C 1200 1600 1300 1600 1400 1400"},
        // Columns
        {qRgb(0x9A, 0xA8, 0xAE), 14, "M 1680 480 L 1680 1460 L 2830 1460"},
        {qRgb(0xE4, 0xE8, 0xE8), 8, "M 1700 1220 L 2820 1220 M 1700 980 L 2820 980 M 1700 740 L 2820 740"},
        {qRgb(0x2F, 0x8F, 0x8A), 0, "R 1770 1120 160 334 10"},
        {qRgb(0x62, 0xB0, 0xA2), 0, "R 2040 920 160 534 10"},
        {qRgb(0xE8, 0x9C, 0x4B), 0, "R 2310 760 160 694 10"},
        {qRgb(0xD3, 0x65, 0x4C), 0, "R 2580 590 160 864 10"},
        {qRgb(0x1F, 0x4E, 0x66), 16, "M 1850 1060 L 2120 850 L 2390 690 L 2660 520"},
        {qRgb(0xC2, 0xCC, 0xCF), 0, "R 180 1600 420 24 12 R 2740 1600 80 24 12"},
    };
    return drawing;
}

void drawDesk(const Lens &lens) {
    const QColor oak(kOak);
    drawBox(lens, {-1.80, -1.60, 3.75}, {-1.70, -0.92, 4.05}, oak.darker(115));
    drawBox(lens, {-0.10, -1.60, 3.75}, {0.00, -0.92, 4.05}, oak.darker(115));
    drawBox(lens, {-1.70, -1.40, 3.95}, {-0.10, -0.92, 3.98}, oak.darker(108));
    drawBox(lens, {-1.90, -0.92, 3.40}, {0.10, -0.86, 4.15}, oak);
}

/// Turned to the teacher, so that the camera sees the back of the lid.
void drawLaptop(const Lens &lens) {
    drawBox(lens, {-1.15, -0.86, 3.62}, {-0.75, -0.845, 3.90}, QColor(0xA9, 0xAF, 0xB3));
    const Surface lid(lens, {-1.15, -0.60, 3.55}, {1, 0, 0}, {0, -1, 0.25});
    static const Artwork back{
        {qRgb(0x8C, 0x95, 0x9B), 0, "R 0 0 400 255 16"}, {qRgb(0xB9, 0xC1, 0xC5), 0, "R 6 6 388 243 13"},
        {qRgb(0xE6, 0xEA, 0xEB), 0, "E 200 125 24 24"},  {qRgb(0x2F, 0x8F, 0x8A), 0, "R 300 170 60 50 6"},
        {qRgb(0xE8, 0x9C, 0x4B), 0, "E 60 60 26 26"},
    };
    back.draw(lid);
}

void drawMugAndBooks(const Lens &lens) {
    drawBox(lens, {-0.55, -0.86, 3.62}, {-0.20, -0.82, 3.86}, QColor(0x2F, 0x6F, 0x7A));
    drawBox(lens, {-0.53, -0.82, 3.63}, {-0.22, -0.785, 3.85}, QColor(0xD3, 0x75, 0x54));
    drawBox(lens, {-0.50, -0.785, 3.64}, {-0.24, -0.755, 3.84}, QColor(0xE3, 0xB5, 0x5B));
    static const Artwork mug{
        {qRgb(0xF1, 0xEA, 0xDC), 12, "E 92 52 24 28"},
        {qRgb(0xF8, 0xF3, 0xE8), 0, "R 14 0 76 104 12"},
        {qRgb(0x2F, 0x8F, 0x8A), 0, "R 14 38 76 22 0"},
    };
    mug.draw(facingSurface(lens, {-1.50, -0.757, 3.55}, 0.12));
}

void drawLectern(const Lens &lens) {
    const QColor walnut(0x8A, 0x5C, 0x3A);
    drawBox(lens, {1.40, -1.60, 3.75}, {1.85, -0.70, 4.05}, walnut);
    drawBox(lens, {1.32, -0.70, 3.62}, {1.93, -0.58, 4.12}, walnut.lighter(118));
    const Surface front(lens, {1.40, -0.70, 3.75}, {1, 0, 0}, {0, -1, 0});
    static const Artwork emblem{
        {qRgb(0x9B, 0x6B, 0x45), 0, "R 60 70 330 760 16"},
        {qRgb(0xE8, 0xC9, 0x8A), 12, "E 225 250 90 90"},
        {qRgb(0xE8, 0xC9, 0x8A), 0, "M 225 190 L 290 290 L 160 290 Z"},
    };
    emblem.draw(front);
    static const Artwork microphone{
        {qRgb(0x3B, 0x40, 0x44), 12, "M 60 300 Q 70 120 120 50"},
        {qRgb(0x2B, 0x2F, 0x33), 0, "E 128 40 26 34"},
    };
    microphone.draw(facingSurface(lens, {1.60, -0.30, 3.9}, 0.24));
}

}  // namespace

void drawProjectionScreen(const Lens &lens) {
    // Hung across the corner at 50 degrees, 5.7 m away, turned to the camera.
    constexpr double kSin = 0.7660;
    constexpr double kCos = 0.6428;
    const Vector right{kCos, 0, -kSin};
    const Vector centre{5.7 * kSin, 1.45, 5.7 * kCos};
    const Surface screen(lens, centre - right * 1.5, right, {0, -1, 0});
    if (!screen.shows(QRectF(-200, -900, 3400, 3000))) return;

    static const Artwork frame{
        {qRgba(70, 45, 20, 50), 0, "R -40 60 3140 1830 20"},
        {qRgb(0x8E, 0x8A, 0x82), 14, "M 200 -120 L 200 -850 M 2800 -120 L 2800 -850"},
        {qRgb(0x26, 0x2B, 0x30), 0, "R -70 -60 3140 1830 8"},
        {qRgb(0xEF, 0xEA, 0xDF), 0, "R -130 -180 3260 150 40"},
        {qRgb(0xCF, 0xC7, 0xB8), 0, "R -130 -70 3260 40 20"},
        {qRgb(0x3A, 0x40, 0x46), 0, "R -80 1762 3160 46 20"},
    };
    frame.draw(screen);
    slide().draw(screen);
    writeStrokes(screen, "Tema 3", {170, 75}, 1.9, QColor(0xFF, 0xFF, 0xFF), 28);
    writeStrokes(screen, "f(x)=x", {2080, 95}, 1.5, QColor(0xF6, 0xCF, 0x9A), 20);
    writeStrokes(screen, "2", {2592, 70}, 0.9, QColor(0xF6, 0xCF, 0x9A), 18);
}

void drawTeachersCorner(const Lens &lens) {
    drawTeacher(lens, {-2.25, 0.16, 4.55});
    drawLectern(lens);
    drawDesk(lens);
    drawMugAndBooks(lens);
    drawLaptop(lens);
    // The projector under the ceiling, on the line from the camera's side to the screen.
    drawBox(lens, {1.28, 2.05, 1.08}, {1.32, 2.30, 1.12}, QColor(0x9C, 0x97, 0x8C));
    drawBox(lens, {1.05, 1.88, 0.95}, {1.55, 2.06, 1.30}, QColor(0xF3, 0xEC, 0xDC));
}

}  // namespace simulator::preview
