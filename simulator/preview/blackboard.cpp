#include <QRadialGradient>
#include <algorithm>
#include <array>

#include "simulator/preview/artwork.h"
#include "simulator/preview/room_parts.h"

namespace simulator::preview {

namespace {

/// Handwriting in strokes on a grid where capitals reach from 0 to 100. Drawn here because not every desktop
/// has a font that looks like chalk.
struct Glyph {
    char letter;
    double advance;
    std::string_view strokes;
};

constexpr std::array kGlyphs = {
    Glyph{'x', 66, "M 2 42 Q 18 38 28 70 Q 38 102 58 96 M 55 42 Q 30 66 4 100"},
    Glyph{'a', 66, "M 45 47 Q 8 34 5 72 Q 6 106 28 98 Q 44 90 46 46 Q 42 96 60 98"},
    Glyph{'b', 60, "M 8 0 Q 4 50 7 98 M 7 66 Q 20 36 40 50 Q 58 70 42 92 Q 25 106 7 90"},
    Glyph{'d', 68, "M 46 52 Q 8 34 5 74 Q 8 110 32 96 Q 46 86 48 58 M 52 0 Q 46 50 48 84 Q 49 100 60 97"},
    Glyph{'f', 50, "M 48 8 Q 28 -10 25 30 L 22 110 Q 20 130 4 122 M 6 48 L 42 45"},
    Glyph{'(', 32, "M 26 -4 Q -4 50 26 112"},
    Glyph{')', 32, "M 4 -4 Q 34 50 4 112"},
    Glyph{'=', 74, "M 4 54 L 58 51 M 5 76 L 60 73"},
    Glyph{'-', 66, "M 4 64 L 54 62"},
    Glyph{'+', 70, "M 30 36 Q 29 62 30 92 M 4 64 L 57 62"},
    Glyph{'2', 64, "M 6 22 Q 14 -6 38 4 Q 58 18 36 52 Q 20 76 4 98 Q 30 92 58 97"},
    Glyph{'3', 62, "M 6 12 Q 30 -12 46 12 Q 52 38 22 46 Q 60 46 52 80 Q 36 114 4 90"},
    Glyph{'S', 60, "M 58 -26 Q 38 -52 33 2 Q 30 55 25 110 Q 20 160 -4 136"},  // the integral sign
    Glyph{'T', 62, "M 2 6 Q 30 2 62 4 M 33 5 Q 29 50 31 98"},
    Glyph{'e', 52, "M 8 72 L 44 66 Q 42 38 22 42 Q 2 52 6 78 Q 14 108 46 90"},
    Glyph{'m', 80, "M 4 44 L 7 98 M 6 62 Q 18 34 32 46 Q 36 70 34 98 M 35 60 Q 48 34 62 48 Q 66 70 68 97"},
    Glyph{'c', 54, "M 44 52 Q 22 32 8 62 Q 2 98 28 99 Q 40 98 48 88"},
    Glyph{' ', 44, ""},
};

struct Writing {
    std::string_view text;
    double x, y, size;
};

// The area under a parabola, as it stands on the board.
constexpr std::array kFormula = {
    Writing{"S", 2120, 560, 3.0}, Writing{"b", 2330, 440, 1.1}, Writing{"a", 2230, 950, 1.1},
    Writing{"x", 2400, 560, 2.6}, Writing{"2", 2570, 530, 1.1}, Writing{"dx", 2720, 560, 2.6},
    Writing{"=", 3130, 560, 2.4}, Writing{"b", 3400, 350, 2.0}, Writing{"3", 3525, 320, 0.9},
    Writing{"-", 3620, 350, 2.0}, Writing{"a", 3770, 350, 2.0}, Writing{"3", 3905, 380, 0.9},
    Writing{"3", 3630, 720, 2.0},
};

constexpr QRgb kChalk = qRgb(0xF4, 0xF1, 0xE6);
constexpr QRgb kYellowChalk = qRgb(0xF7, 0xDD, 0x84);
constexpr QRgb kPinkChalk = qRgb(0xF2, 0xA7, 0x9B);
constexpr QRgb kBlueChalk = qRgb(0x9F, 0xD0, 0xE0);

const Artwork &graph() {
    static const Artwork drawing{
        {qRgba(0x9F, 0xD0, 0xE0, 70), 0, "M 760 1010 L 760 890 Q 1040 800 1240 440 L 1240 1010 Z"},
        {kBlueChalk, 9,
         "M 770 990 L 850 900 M 800 1008 L 990 800 M 900 1008 L 1110 690 M 1000 1008 L 1230 640 "
         "M 1100 1008 L 1236 800"},
        {kChalk, 15, "M 330 1012 Q 900 1004 1560 1012 M 1510 980 L 1562 1012 L 1512 1046"},
        {kChalk, 15, "M 480 1150 Q 472 700 482 260 M 446 312 L 482 258 L 516 310"},
        {kYellowChalk, 20, "M 380 930 Q 480 985 640 940 Q 1060 830 1330 290"},
        {kChalk, 10, "M 760 1012 L 760 892 M 1240 1012 L 1240 442"},
    };
    return drawing;
}

const Artwork &triangle() {
    static const Artwork drawing{
        {qRgba(0xF2, 0xA7, 0x9B, 60), 0, "M 4260 1080 L 4830 1080 L 4830 640 Z"},
        {kPinkChalk, 18, "M 4260 1080 Q 4550 1074 4830 1082 Q 4836 860 4828 640 Q 4540 850 4260 1080"},
        {kChalk, 10, "M 4770 1078 L 4770 1022 L 4828 1022"},
        {kChalk, 10, "M 4360 1078 Q 4370 1040 4342 1016"},
    };
    return drawing;
}

void drawWriting(const Surface &board) {
    const QColor chalk(kChalk);
    writeStrokes(board, "Tema 3", {2120, 120}, 1.45, chalk, 12);
    board.stroke(readPath("M 2110 292 Q 2400 276 2700 288"), QColor(kPinkChalk), 12);

    graph().draw(board);
    writeStrokes(board, "f(x)", {1010, 240}, 1.25, QColor(kYellowChalk), 11);
    writeStrokes(board, "a", {725, 1030}, 1.1, chalk, 10);
    writeStrokes(board, "b", {1210, 1050}, 1.1, chalk, 10);

    for (const Writing &piece : kFormula)
        writeStrokes(board, piece.text, {piece.x, piece.y}, piece.size, chalk,
                     std::max(11.0, 7 * piece.size));
    board.stroke(readPath("M 3380 640 Q 3680 628 3990 638"), chalk, 16);

    triangle().draw(board);
    writeStrokes(board, "a", {4880, 800}, 1.0, chalk, 10);
    writeStrokes(board, "b", {4530, 1100}, 1.0, chalk, 10);
    writeStrokes(board, "c", {4460, 720}, 1.0, chalk, 10);
    writeStrokes(board, "c", {4240, 250}, 1.3, chalk, 11);
    writeStrokes(board, "2", {4312, 225}, 0.7, chalk, 9);
    writeStrokes(board, "=a", {4375, 250}, 1.3, chalk, 11);
    writeStrokes(board, "2", {4555, 225}, 0.7, chalk, 9);
    writeStrokes(board, "+b", {4620, 250}, 1.3, chalk, 11);
    writeStrokes(board, "2", {4792, 225}, 0.7, chalk, 9);
}

/// Where the sponge has been.
void drawSmudges(const Surface &board) {
    for (const QRectF &smudge : {QRectF(900, 120, 1500, 700), QRectF(2900, 700, 1300, 600),
                                 QRectF(200, 800, 900, 500), QRectF(4100, 100, 800, 700)}) {
        QPainterPath path;
        path.addEllipse(smudge);
        QRadialGradient chalkDust(QPointF(0.5, 0.5), 0.5);
        chalkDust.setCoordinateMode(QGradient::ObjectMode);
        chalkDust.setColorAt(0, QColor(255, 255, 255, 20));
        chalkDust.setColorAt(1, QColor(255, 255, 255, 0));
        board.fill(path, chalkDust);
    }
}

}  // namespace

void writeStrokes(const Surface &surface, std::string_view text, QPointF where, double size,
                  const QColor &colour, double lineWidth) {
    for (const char letter : text) {
        const auto *const glyph = std::find_if(kGlyphs.begin(), kGlyphs.end(),
                                               [letter](const Glyph &each) { return each.letter == letter; });
        if (glyph == kGlyphs.end()) continue;
        const QTransform place = QTransform::fromTranslate(where.x(), where.y()).scale(size, size);
        if (!glyph->strokes.empty()) surface.stroke(place.map(readPath(glyph->strokes)), colour, lineWidth);
        where.rx() += glyph->advance * size;
    }
}

void drawBlackboard(const Lens &lens) {
    const Surface board(lens, {-2.5, 0.85, room::kFront}, {1, 0, 0}, {0, -1, 0});
    if (!board.shows(QRectF(-150, -150, 5300, 1800))) return;

    board.fill(readPath("R -60 -30 5180 1600 30"), QColor(60, 40, 20, 45));
    board.fill(readPath("R -80 -80 5160 1610 24"), QColor(0x8F, 0x61, 0x3C));
    board.fill(readPath("R -62 -62 5124 1574 18"), QColor(0xA8, 0x76, 0x4C));
    QLinearGradient green(0, 0, 5000, 1450);
    green.setColorAt(0, QColor(0x35, 0x6B, 0x5B));
    green.setColorAt(0.5, QColor(0x2E, 0x60, 0x52));
    green.setColorAt(1, QColor(0x25, 0x50, 0x45));
    board.fill(QRectF(0, 0, 5000, 1450), green);
    drawSmudges(board);
    drawWriting(board);

    drawBox(lens, {-2.5, -0.66, 5.40}, {2.5, -0.62, 5.5}, QColor(0x9B, 0x6B, 0x43));
    static const Artwork chalks{
        {qRgb(0xF6, 0xF3, 0xEA), 0, "R 2900 1448 90 20 8"},
        {kYellowChalk, 0, "R 3030 1448 80 20 8"},
        {kPinkChalk, 0, "R 3140 1448 70 20 8"},
        {qRgb(0x4B, 0x5D, 0x78), 0, "R 1500 1424 210 24 6"},
        {qRgb(0xC9, 0xA9, 0x6B), 0, "R 1500 1446 210 22 4"},
    };
    chalks.draw(board);
}

}  // namespace simulator::preview
