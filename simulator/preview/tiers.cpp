// The rows of desks that rise behind the camera.

#include <QLinearGradient>
#include <array>

#include "simulator/preview/artwork.h"
#include "simulator/preview/room_parts.h"

namespace simulator::preview {

namespace {

using namespace room;

constexpr int kRows = 5;
constexpr double kFirstRow = -2.3;  // metres
constexpr double kRowDepth = 1.15;
constexpr double kRise = 0.32;
constexpr double kSeatPitch = 0.74;
constexpr double kBenchEnd = 5.15;   // from the middle of the room
constexpr double kAisleHalf = 0.55;  // the stairs in the middle

struct Row {
    int number;
    double front;  // z of the step's edge
    double step;   // y of the ground
};

Row rowAt(int number) {
    return {number, kFirstRow - kRowDepth * number, kFloor + kRise * (number + 1)};
}

void drawStep(const Lens &lens, const Row &row) {
    const double depth = row.number == kRows - 1 ? row.front - kBack : kRowDepth;
    const double width = (kRight - kLeft) * 1000;
    const Surface tread(lens, {kRight, row.step, row.front - depth}, {-1, 0, 0}, {0, 0, 1});
    tread.fill(QRectF(0, 0, width, depth * 1000), QColor(0x55, 0x72, 0x76));
    tread.fill(QRectF(5450, 0, 1100, depth * 1000), QColor(0x66, 0x86, 0x88));
    tread.fill(QRectF(0, depth * 1000 - 50, width, 50), QColor(0xD8, 0xC0, 0x92));

    const Surface riser(lens, {kRight, row.step, row.front}, {-1, 0, 0}, {0, -1, 0});
    QLinearGradient shade(0, 0, 0, kRise * 1000);
    shade.setColorAt(0, QColor(0x9A, 0x70, 0x4A));
    shade.setColorAt(1, QColor(0x7E, 0x59, 0x3A));
    riser.fill(QRectF(0, 0, width, kRise * 1000), shade);
    riser.fill(QRectF(0, 0, width, 26), QColor(0xC9, 0xA8, 0x76));
}

void drawChair(const Lens &lens, Vector top) {
    static const Artwork chair{
        {qRgb(0x5C, 0x40, 0x2B), 0, "R 40 0 420 480 60"},
        {qRgb(0x9C, 0x4A, 0x3E), 0, "R 56 16 388 448 50"},
        {qRgb(0xB2, 0x5B, 0x4B), 0, "R 86 40 328 300 40"},
    };
    chair.draw(facingSurface(lens, top, 0.5));
}

/// Papers, tablets and laptops on the desk before a seat.
void drawBelongings(const Lens &lens, double x, const Row &row, unsigned number) {
    const Vector deskFront{x, row.step + 0.74, row.front - 0.42};
    if (number % 4 == 1) {
        static const Artwork lid{
            {qRgb(0x7F, 0x88, 0x8E), 0, "R 0 0 340 220 14"},
            {qRgb(0xAA, 0xB2, 0xB7), 0, "R 6 6 328 208 11"},
            {qRgb(0xE6, 0xEA, 0xEB), 0, "E 170 105 20 20"},
        };
        lid.draw(facingSurface(lens, deskFront + Vector{0, 0.22, 0}, 0.34));
        return;
    }
    const QColor cover = number % 4 == 2 ? QColor(0xF7, 0xF2, 0xE4) : QColor(0xE0, 0xB0, 0x56);
    if (number % 4 != 3)
        drawBox(lens, deskFront - Vector{0.14, 0.01, 0.12}, deskFront + Vector{0.14, 0.012, 0.08}, cover);
}

void drawBench(const Lens &lens, const Row &row, double from, double to) {
    const double front = row.front - 0.25;
    const double top = row.step + 0.73;
    drawBox(lens, {from, row.step + 0.05, front - 0.06}, {to, top - 0.03, front - 0.03},
            QColor(0xB8, 0x86, 0x57));
    const Surface panel(lens, {to, top - 0.03, front - 0.03}, {-1, 0, 0}, {0, -1, 0});
    const double width = (to - from) * 1000;
    panel.fill(QRectF(0, 0, width, 120), QColor(70, 42, 18, 50));
    for (double x = width / 3; x < width - 100; x += width / 3)
        panel.fill(QRectF(x, 0, 16, 650), QColor(90, 56, 28, 110));
    drawBox(lens, {from, top - 0.03, front - 0.42}, {to, top, front}, QColor(0xD2, 0xA4, 0x72));
}

/// A fixed but irregular choice, so that the audience is the same at every start.
unsigned seatNumber(int row, int seat) {
    unsigned mixed = static_cast<unsigned>(row) * 0x9E3779B1U + static_cast<unsigned>(seat) * 0x85EBCA77U;
    mixed ^= mixed >> 15U;
    mixed *= 0x2C1B3C6DU;
    return (mixed ^ (mixed >> 13U)) & 0xFFFFU;
}

void drawSide(const Lens &lens, const Row &row, double side) {
    // From the outer seat inwards: towards the camera, so that neighbours overlap the right way.
    constexpr int kSeats = 6;
    for (int seat = kSeats - 1; seat >= 0; --seat) {
        const double x = side * (kAisleHalf + 0.42 + kSeatPitch * seat);
        const unsigned number = seatNumber(row.number, side > 0 ? seat : seat + kSeats);
        drawChair(lens, {x, row.step + 0.92, row.front - 1.05});
        if (number % 6 != 0) {
            const double height = 1.24 + 0.02 * (number % 5);
            drawStudent(lens, {x, row.step + height, row.front - 0.86}, number);
        }
    }
    drawBench(lens, row, side > 0 ? kAisleHalf : -kBenchEnd, side > 0 ? kBenchEnd : -kAisleHalf);
    for (int seat = 0; seat < kSeats; ++seat) {
        const unsigned number = seatNumber(row.number, side > 0 ? seat : seat + kSeats);
        if (number % 6 != 0)
            drawBelongings(lens, side * (kAisleHalf + 0.42 + kSeatPitch * seat), row, number / 5);
    }
}

}  // namespace

void drawTiers(const Lens &lens) {
    for (int number = kRows - 1; number >= 0; --number) {
        const Row row = rowAt(number);
        drawStep(lens, row);
        drawSide(lens, row, -1);
        drawSide(lens, row, 1);
    }
}

}  // namespace simulator::preview
