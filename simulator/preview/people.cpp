#include <array>

#include "simulator/preview/artwork.h"
#include "simulator/preview/room_parts.h"

namespace simulator::preview {

namespace {

constexpr std::array kSkins = {qRgb(0xF2, 0xCB, 0xA9), qRgb(0xE3, 0xAE, 0x85), qRgb(0xC7, 0x8B, 0x61),
                               qRgb(0x9A, 0x66, 0x45), qRgb(0xF5, 0xD5, 0xBC)};
constexpr std::array kHairs = {qRgb(0x3A, 0x2B, 0x26), qRgb(0x6B, 0x45, 0x2C), qRgb(0xA8, 0x70, 0x3A),
                               qRgb(0x22, 0x20, 0x25), qRgb(0xD6, 0xA9, 0x5C), qRgb(0x8A, 0x3F, 0x2A)};
constexpr std::array kShirts = {qRgb(0x2F, 0x7F, 0x86), qRgb(0xD9, 0x75, 0x5A), qRgb(0xE0, 0xB0, 0x56),
                                qRgb(0x3E, 0x55, 0x7A), qRgb(0x86, 0xA6, 0x86), qRgb(0x8A, 0x5A, 0x7C),
                                qRgb(0xEE, 0xE3, 0xCF), qRgb(0x5A, 0x8F, 0xB4), qRgb(0xB8, 0x4E, 0x4A)};

/// What lies behind the head and what lies over it.
struct HairStyle {
    std::string_view behind;
    std::string_view over;
};

constexpr std::array kHairStyles = {
    HairStyle{
        "",
        "M 188 168 Q 176 30 282 34 Q 388 30 372 168 Q 366 112 336 92 Q 270 112 222 92 Q 196 118 188 168 Z"},
    HairStyle{"M 172 170 Q 158 22 280 22 Q 402 22 388 170 L 402 350 Q 280 390 158 350 Z",
              "M 186 176 Q 180 40 280 40 Q 380 40 374 176 Q 362 110 300 76 Q 250 130 186 176 Z"},
    HairStyle{"E 200 110 62 62 E 360 110 62 62 E 190 180 46 50 E 370 180 46 50",
              "E 220 80 50 44 E 280 58 60 44 E 340 80 50 44 E 195 120 30 34 E 365 120 30 34"},
    HairStyle{"E 280 12 52 48",
              "M 186 160 Q 182 36 280 36 Q 378 36 374 160 Q 350 96 280 92 Q 210 96 186 160 Z"},
};

const Artwork &face() {
    static const Artwork drawing{
        {qRgb(0x3A, 0x2B, 0x26), 0, "E 247 152 9 11 E 313 152 9 11"},
        {qRgba(0x50, 0x30, 0x22, 200), 7, "M 230 128 Q 246 120 262 127 M 298 127 Q 314 120 330 128"},
        {qRgba(0xA4, 0x4F, 0x40, 220), 8, "M 252 202 Q 280 224 308 202"},
        {qRgba(0xD9, 0x6F, 0x5A, 60), 0, "E 224 188 22 16 E 336 188 22 16"},
    };
    return drawing;
}

template <typename Table>
[[nodiscard]] auto pick(const Table &table, unsigned number) {
    return table[number % table.size()];
}

}  // namespace

void drawStudent(const Lens &lens, Vector top, unsigned number) {
    const Surface body = facingSurface(lens, top, 0.56);
    if (!body.shows(QRectF(-50, -60, 660, 860))) return;
    static const QPainterPath torso =
        readPath("M 40 760 Q 40 372 180 330 Q 280 300 380 330 Q 520 372 520 760 Z");
    static const QPainterPath folds = readPath("M 130 760 Q 140 580 122 480 M 430 760 Q 420 580 438 480");
    static const QPainterPath neck = readPath("R 240 220 80 130 30");
    static const QPainterPath head = readPath("E 280 156 90 110 E 190 160 16 24 E 370 160 16 24");
    static const QPainterPath collar = readPath("M 214 322 Q 280 400 346 322 Q 280 306 214 322 Z");

    const QColor skin(pick(kSkins, number / 3));
    const QColor hair(pick(kHairs, number / 7));
    const QColor shirt(pick(kShirts, number));
    const HairStyle style = pick(kHairStyles, number / 2);

    body.fill(readPath(style.behind), hair.darker(115));
    body.fill(torso, shirt);
    body.stroke(folds, shirt.darker(118), 12);
    body.fill(collar, skin.darker(108));
    body.fill(neck, skin.darker(108));
    body.fill(head, skin);
    body.fill(readPath(style.over), hair);
    face().draw(body);
}

void drawTeacher(const Lens &lens, Vector top) {
    const Surface body = facingSurface(lens, top, 0.56);
    if (!body.shows(QRectF(-200, -60, 900, 1900))) return;
    static const Artwork figure{
        {qRgba(60, 40, 20, 60), 0, "E 280 1750 280 40"},
        {qRgb(0x2C, 0x2A, 0x2E), 0, "R 150 1700 120 60 24 R 290 1700 120 60 24"},
        {qRgb(0x3B, 0x47, 0x5C), 0,
         "M 150 900 L 410 900 L 400 1715 L 305 1715 L 284 1080 L 262 1715 L 165 1715 Z"},
        // The arm towards the board
        {qRgb(0x9B, 0x4F, 0x4B), 92, "M 455 420 L 560 620 L 640 500"},
        {qRgb(0xE3, 0xAE, 0x85), 0, "E 652 470 40 46"},
        {qRgb(0xF6, 0xF3, 0xEA), 16, "M 660 440 L 690 400"},
        // The other arm
        {qRgb(0x9B, 0x4F, 0x4B), 92, "M 108 430 L 76 680 L 120 850"},
        {qRgb(0xE3, 0xAE, 0x85), 0, "E 124 894 40 46"},
        {qRgb(0xAE, 0x5A, 0x54), 0,
         "M 70 960 Q 90 372 190 330 Q 280 304 370 330 Q 470 372 490 960 Q 280 990 70 960 Z"},
        {qRgb(0xF3, 0xEB, 0xDC), 0, "M 214 322 L 280 620 L 346 322 Z"},
        {qRgb(0x8E, 0x45, 0x42), 10, "M 214 322 L 280 640 L 346 322 M 280 640 L 280 968"},
        {qRgb(0xD6, 0x9F, 0x76), 0, "R 240 220 80 140 30"},
        {qRgb(0x5A, 0x50, 0x4E), 0,
         "M 176 170 Q 160 22 280 20 Q 400 22 384 170 Q 400 300 330 290 L 230 290 Q 160 300 176 170 Z"},
        {qRgb(0xE3, 0xAE, 0x85), 0, "E 280 160 88 110"},
        {qRgb(0x6B, 0x60, 0x5D), 0,
         "M 186 180 Q 176 36 280 36 Q 384 36 374 180 Q 366 110 310 82 Q 240 120 186 180 Z"},
    };
    figure.draw(body);
    face().draw(body);
    static const Artwork glasses{
        {qRgb(0x2F, 0x4A, 0x55), 9,
         "E 246 154 34 30 E 314 154 34 30 M 280 150 L 281 150 M 212 148 L 194 142 M 348 148 L 366 142"}};
    glasses.draw(body);
}

}  // namespace simulator::preview
