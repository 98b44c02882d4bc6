// The wall with the windows and the wall with the door.

#include <QLinearGradient>
#include <array>

#include "simulator/preview/artwork.h"
#include "simulator/preview/room_parts.h"

namespace simulator::preview {

namespace {

using namespace room;

constexpr double kDepth = (kFront - kBack) * 1000;      // millimetres
constexpr double kHeight = (kCeiling - kFloor) * 1000;  // millimetres

constexpr double kWindowTop = 700;
constexpr double kWindowWidth = 1900;
constexpr double kWindowHeight = 1850;
constexpr std::array kWindowLefts = {3500.0, 5900.0, 8300.0, 10700.0};

/// Fields, hills and trees beyond the windows; one landscape that passes behind all of them.
const Artwork &landscape() {
    static const Artwork drawing{
        {qRgba(255, 255, 255, 235), 0, "E 4300 1080 330 90 E 4550 1000 240 120 E 4800 1090 300 80"},
        {qRgba(255, 255, 255, 225), 0, "E 7000 1250 300 70 E 7200 1190 200 100 E 7420 1260 260 64"},
        {qRgba(255, 255, 255, 225), 0, "E 9200 980 340 80 E 9420 900 220 110 E 9700 990 260 70"},
        {qRgba(255, 255, 255, 225), 0, "E 11600 1100 340 80 E 11850 1030 220 110"},
        {qRgb(0x9D, 0xBF, 0xCB), 0,
         "M 3400 2100 Q 4200 1640 5000 1900 Q 5900 1480 7000 1900 Q 8200 1560 9400 1880 Q 10600 1500 12700 "
         "1860 "
         "L 12700 2600 L 3400 2600 Z"},
        {qRgb(0x8F, 0xB9, 0x7C), 0,
         "M 3400 2180 Q 4800 1960 6200 2120 Q 8000 1960 9700 2130 Q 11200 1980 12700 2140 L 12700 2600 L "
         "3400 "
         "2600 Z"},
        {qRgb(0x79, 0xA8, 0x63), 0,
         "M 3400 2360 Q 6000 2220 8400 2350 Q 10600 2240 12700 2360 L 12700 2600 L 3400 2600 Z"},
        {qRgb(0xE9, 0xD9, 0xB8), 0, "M 7560 2600 Q 7700 2400 8080 2320 Q 7860 2440 7900 2600 Z"},
    };
    return drawing;
}

/// A broad tree; the foot of the trunk at 0,0.
const Artwork &broadTree() {
    static const Artwork drawing{
        {qRgb(0x7A, 0x57, 0x3A), 0, "M -34 0 L -22 -420 L 22 -420 L 36 0 Z"},
        {qRgb(0x4E, 0x86, 0x50), 0, "E -170 -520 200 180 E 170 -500 210 180 E 0 -660 240 220"},
        {qRgb(0x66, 0x9F, 0x5E), 0, "E -60 -700 150 130 E -190 -560 120 100 E 120 -560 110 90"},
    };
    return drawing;
}

/// A cypress; the foot at 0,0.
const Artwork &cypress() {
    static const Artwork drawing{
        {qRgb(0x6E, 0x50, 0x38), 0, "R -18 -120 36 130 4"},
        {qRgb(0x3D, 0x71, 0x52), 0, "M 0 -1000 Q 150 -480 110 -160 Q 0 -60 -110 -160 Q -150 -480 0 -1000 Z"},
        {qRgb(0x52, 0x8A, 0x63), 0,
         "M -10 -900 Q 40 -480 10 -180 Q -80 -140 -90 -220 Q -110 -520 -10 -900 Z"},
    };
    return drawing;
}

void drawOutdoors(const Surface &wall) {
    QLinearGradient sky(0, kWindowTop, 0, 2100);
    sky.setColorAt(0, QColor(0x7F, 0xB8, 0xDE));
    sky.setColorAt(1, QColor(0xDD, 0xEE, 0xF2));
    wall.fill(QRectF(3400, 650, 9300, 1950), sky);
    landscape().draw(wall);
    for (const QPointF foot :
         {QPointF(4750, 2480), QPointF(6500, 2440), QPointF(9700, 2470), QPointF(11500, 2480)})
        broadTree().draw(wall, foot);
    for (const QPointF foot : {QPointF(3850, 2440), QPointF(7120, 2480), QPointF(7420, 2450),
                               QPointF(8700, 2460), QPointF(9080, 2490), QPointF(12100, 2460)})
        cypress().draw(wall, foot);
}

void drawWindowFrame(const Surface &wall, double left) {
    static const Artwork frame{
        {qRgba(255, 255, 255, 38), 0, "M 300 1850 L 900 0 L 1250 0 L 650 1850 Z"},
        {qRgb(0xFB, 0xF9, 0xF3), 70, "M 0 0 L 1900 0 L 1900 1850 L 0 1850 Z M 950 0 L 950 1850"},
        {qRgb(0xDC, 0xD4, 0xC4), 12,
         "M 42 42 L 908 42 L 908 1808 L 42 1808 Z M 992 42 L 1858 42 L 1858 1808 L 992 1808 Z"},
        {qRgb(0x9A, 0x9E, 0x9C), 0, "R 905 900 22 150 10"},
        {qRgb(0xEF, 0xE7, 0xD6), 0, "R -110 1870 2120 70 12"},
        {qRgba(70, 50, 25, 50), 0, "R -90 1940 2080 26 6"},
    };
    frame.draw(wall, {left, kWindowTop});
}

void drawRadiator(const Surface &wall, double left) {
    wall.fill(readPath("R 0 0 1500 620 20").translated(left, 2960), QColor(80, 60, 35, 40));
    for (double x = 0; x < 1480; x += 110) {
        QPainterPath rib;
        rib.addRoundedRect(QRectF(left + x, 2930, 96, 620), 30, 30);
        wall.fill(rib, QColor(0xF6, 0xF1, 0xE6));
        wall.fill(QRectF(left + x + 70, 2960, 14, 560), QColor(0xD3, 0xC9, 0xB7));
    }
}

const Artwork &door() {
    static const Artwork drawing{
        {qRgb(0x7A, 0x52, 0x33), 0, "R 11580 1680 1840 2220 16"},
        {qRgb(0xB9, 0x7F, 0x50), 0, "R 11690 1790 805 2110 6 R 12505 1790 805 2110 6"},
        {qRgb(0xA3, 0x6C, 0x41), 0, "R 11790 2950 605 760 20 R 12605 2950 605 760 20"},
        {qRgb(0xC6, 0x8E, 0x5F), 0, "R 11815 2975 555 710 14 R 12630 2975 555 710 14"},
        {qRgb(0x8A, 0x5C, 0x38), 0, "R 11905 1960 375 720 30 R 12720 1960 375 720 30"},
        {qRgb(0xBF, 0xDB, 0xDC), 0, "R 11935 1990 315 660 20 R 12750 1990 315 660 20"},
        {qRgba(255, 255, 255, 120), 0,
         "M 11950 2500 L 12130 2000 L 12210 2000 L 11990 2600 Z "
         "M 12765 2500 L 12945 2000 L 13025 2000 L 12805 2600 Z"},
        {qRgb(0x6B, 0x47, 0x2C), 0, "R 12490 1790 20 2110 2"},
        {qRgb(0xD8, 0xD3, 0xC6), 0, "R 12330 2790 150 44 20 R 12520 2790 150 44 20"},
        {qRgb(0x95, 0x90, 0x84), 0, "R 12430 2770 50 90 12 R 12520 2770 50 90 12"},
    };
    return drawing;
}

/// The green sign with the running figure, above the door.
const Artwork &exitSign() {
    static const Artwork drawing{
        {qRgba(80, 255, 160, 40), 0, "R 12070 1190 860 430 60"},
        {qRgb(0xF2, 0xF6, 0xF0), 0, "R 12120 1235 760 340 20"},
        {qRgb(0x1C, 0x8A, 0x58), 0, "R 12140 1255 720 300 14"},
        {qRgb(0xFF, 0xFF, 0xFF), 0, "R 12660 1300 150 220 4 E 12470 1320 30 30"},
        {qRgb(0xFF, 0xFF, 0xFF), 36,
         "M 12445 1365 L 12415 1440 M 12415 1440 L 12475 1470 L 12455 1520 "
         "M 12410 1440 L 12380 1490 L 12320 1495"},
        {qRgb(0xFF, 0xFF, 0xFF), 24,
         "M 12440 1370 L 12500 1400 L 12545 1385 M 12440 1370 L 12380 1385 L 12355 1430"},
        {qRgb(0xFF, 0xFF, 0xFF), 22, "M 12190 1405 L 12280 1405 M 12225 1365 L 12185 1405 L 12225 1445"},
    };
    return drawing;
}

const Artwork &planetPoster() {
    static const Artwork drawing{
        {qRgba(60, 40, 20, 50), 0, "R 25 30 900 1250 8"},
        {qRgb(0xFD, 0xFA, 0xF2), 0, "R 0 0 900 1250 8"},
        {qRgb(0x23, 0x35, 0x58), 0, "R 40 40 820 1170 4"},
        {qRgb(0xF6, 0xC9, 0x5C), 0, "E 180 230 150 150"},
        {qRgba(255, 255, 255, 90), 6,
         "M 480 230 C 480 396 346 530 180 530 Q 110 530 46 498 M 650 230 C 650 490 440 700 180 700 Q 110 700 "
         "46 682"},
        {qRgb(0xE0, 0x7A, 0x4F), 0, "E 390 440 52 52"},
        {qRgb(0x6F, 0xB7, 0xC9), 0, "E 570 500 70 70"},
        {qRgb(0x8C, 0xBF, 0x7F), 0, "E 550 480 28 20 E 592 520 22 28"},
        {qRgb(0xE3, 0xBB, 0x86), 0, "E 470 850 170 170"},
        {qRgb(0xC9, 0x95, 0x5F), 22, "M 315 800 L 625 800 M 308 880 L 632 880"},
        {qRgb(0xF4, 0xDF, 0xB8), 26, "M 230 930 Q 200 990 330 970 Q 620 900 720 770 Q 750 710 640 745"},
        {qRgb(0xFF, 0xFF, 0xFF), 0,
         "E 620 160 8 8 E 720 280 6 6 E 160 620 7 7 E 760 620 8 8 E 120 980 6 6 E 700 1080 8 8 E 420 120 6 "
         "6"},
        {qRgb(0xF4, 0xDF, 0xB8), 0, "R 150 1120 480 26 12"},
    };
    return drawing;
}

const Artwork &moleculePoster() {
    static const Artwork drawing{
        {qRgba(60, 40, 20, 50), 0, "R 25 30 900 1250 8"},
        {qRgb(0xFD, 0xFA, 0xF2), 0, "R 0 0 900 1250 8"},
        {qRgb(0xF3, 0xD9, 0xC4), 0, "R 40 40 820 1170 4"},
        {qRgb(0x7A, 0x5B, 0x6E), 26,
         "M 450 360 L 660 480 L 660 720 L 450 840 L 240 720 L 240 480 Z M 450 360 L 450 190 M 660 720 L 790 "
         "800"},
        {qRgb(0x7A, 0x5B, 0x6E), 12, "M 450 420 L 605 510 M 605 690 L 450 780 M 290 690 L 290 510"},
        {qRgb(0xD8, 0x6A, 0x55), 0, "E 450 190 74 74 E 450 840 74 74"},
        {qRgb(0x3F, 0x7F, 0x8C), 0,
         "E 450 360 58 58 E 660 480 58 58 E 660 720 58 58 E 240 720 58 58 E 240 480 58 58"},
        {qRgb(0xE8, 0xB0, 0x4A), 0, "E 790 800 50 50"},
        {qRgba(255, 255, 255, 130), 0,
         "E 425 165 22 22 E 425 815 22 22 E 432 342 16 16 E 642 462 16 16 E 222 462 16 16"},
        {qRgb(0x7A, 0x5B, 0x6E), 0, "R 120 1010 560 36 16 R 120 1080 420 22 10 R 120 1125 480 22 10"},
    };
    return drawing;
}

const Artwork &noticeBoard() {
    static const Artwork drawing{
        {qRgb(0x8F, 0x61, 0x3C), 0, "R 0 0 1700 1150 16"},
        {qRgb(0xCF, 0xA3, 0x72), 0, "R 50 50 1600 1050 6"},
        {qRgb(0xFB, 0xF7, 0xEC), 0, "R 130 130 420 560 4 R 1180 420 360 480 4"},
        {qRgb(0xF5, 0xD9, 0x7E), 0, "R 650 140 380 300 4"},
        {qRgb(0xB9, 0xD8, 0xCC), 0, "R 640 540 440 420 4"},
        {qRgb(0xEE, 0xB5, 0xA2), 0, "R 1150 120 380 220 4 R 160 770 360 240 4"},
        {qRgb(0x8D, 0x86, 0x7A), 14,
         "M 190 240 L 490 240 M 190 320 L 470 320 M 190 400 L 490 400 M 190 480 L 420 480 "
         "M 1230 540 L 1480 540 M 1230 620 L 1450 620 M 1230 700 L 1490 700"},
        {qRgb(0x4C, 0x86, 0x7A), 22, "M 700 880 L 800 760 L 880 830 L 1010 640"},
        {qRgb(0x9B, 0x7B, 0x2E), 14, "M 700 240 L 970 240 M 700 310 L 920 310"},
        {qRgb(0xC9, 0x4C, 0x3F), 0,
         "E 340 150 20 20 E 840 160 20 20 E 860 560 20 20 E 1340 140 20 20 E 1360 440 20 20 E 340 790 20 20"},
    };
    return drawing;
}

const Artwork &wallClock() {
    static const Artwork drawing{
        {qRgba(60, 40, 20, 55), 0, "E 18 28 300 300"},
        {qRgb(0x2F, 0x4A, 0x55), 0, "E 0 0 300 300"},
        {qRgb(0xFE, 0xFC, 0xF6), 0, "E 0 0 262 262"},
        {qRgb(0x2F, 0x4A, 0x55), 18, "M 0 -232 L 0 -190 M 232 0 L 190 0 M 0 232 L 0 190 M -232 0 L -190 0"},
        {qRgb(0x7B, 0x8C, 0x92), 10,
         "M 116 -201 L 104 -180 M 201 -116 L 180 -104 M 201 116 L 180 104 M 116 201 L 104 180 "
         "M -116 201 L -104 180 M -201 116 L -180 104 M -201 -116 L -180 -104 M -116 -201 L -104 -180"},
        {qRgb(0x2F, 0x4A, 0x55), 24, "M 0 0 L -100 -62"},
        {qRgb(0x2F, 0x4A, 0x55), 16, "M 0 0 L 150 -92"},
        {qRgb(0xC9, 0x4C, 0x3F), 7, "M -20 50 L 80 -190"},
        {qRgb(0xC9, 0x4C, 0x3F), 0, "E 0 0 18 18"},
    };
    return drawing;
}

void drawSkirting(const Surface &wall) {
    wall.fill(QRectF(0, 0, kDepth, 70), QColor(0xFB, 0xF6, 0xEA));
    wall.fill(QRectF(0, kHeight - 160, kDepth, 160), QColor(0x86, 0x61, 0x42));
}

}  // namespace

void drawWindowWall(const Lens &lens) {
    const Surface wall(lens, {kRight, kCeiling, kFront}, {0, 0, -1}, {0, -1, 0});
    const QRectF whole(0, 0, kDepth, kHeight);
    if (!wall.shows(whole)) return;
    drawOutdoors(wall);

    // The wall is laid around the openings in strips: above, below and between the windows.
    const QColor upper(0xE4, 0xD6, 0xBB);
    wall.fill(QRectF(0, 0, kDepth, kWindowTop), upper);
    wall.fill(QRectF(0, kWindowTop + kWindowHeight, kDepth, kHeight - kWindowTop - kWindowHeight),
              QColor(0xDD, 0xCD, 0xB0));
    double left = 0;
    for (const double window : kWindowLefts) {
        wall.fill(QRectF(left, kWindowTop - 4, window - left, kWindowHeight + 8), QColor(0xE1, 0xD2, 0xB6));
        left = window + kWindowWidth;
    }
    wall.fill(QRectF(left, kWindowTop - 4, kDepth - left, kWindowHeight + 8), QColor(0xE1, 0xD2, 0xB6));

    for (const double window : kWindowLefts) drawWindowFrame(wall, window);
    for (const double window : {3700.0, 6100.0}) drawRadiator(wall, window);
    drawSkirting(wall);
}

void drawDoorWall(const Lens &lens) {
    const Surface wall(lens, {kLeft, kCeiling, kBack}, {0, 0, 1}, {0, -1, 0});
    const QRectF whole(0, 0, kDepth, kHeight);
    if (!wall.shows(whole)) return;

    QLinearGradient paint(0, 0, 0, kHeight);
    paint.setColorAt(0, QColor(0xEE, 0xE1, 0xC8));
    paint.setColorAt(1, QColor(0xDB, 0xCA, 0xAC));
    wall.fill(whole, paint);
    wall.fill(QRectF(0, 2500, kDepth, 1400), QColor(0xA9, 0xB9, 0xA4));
    wall.fill(QRectF(0, 2480, kDepth, 40), QColor(0xF6, 0xEE, 0xDD));
    drawSkirting(wall);

    door().draw(wall);
    exitSign().draw(wall);
    planetPoster().draw(wall, {9950, 950});
    moleculePoster().draw(wall, {8650, 950});
    wallClock().draw(wall, {7900, 900});
    noticeBoard().draw(wall, {5300, 1050});
}

}  // namespace simulator::preview
