#include "simulator/preview/lecture_room.h"

#include <QPainter>
#include <QRadialGradient>
#include <algorithm>
#include <cmath>

#include "simulator/preview/room_parts.h"

namespace simulator {

namespace {

constexpr double kGreatestMagnification = 10;

/// A lens lets a little less light through towards the corners.
void paintVignette(QPainter &painter, const QRectF &picture) {
    QRadialGradient shade(picture.center(), std::hypot(picture.width(), picture.height()) / 2);
    shade.setColorAt(0.55, QColor(30, 18, 8, 0));
    shade.setColorAt(1.0, QColor(30, 18, 8, 80));
    painter.fillRect(picture, shade);
}

}  // namespace

double magnification(double zoomRaw, double maximumZoom) {
    if (maximumZoom <= 0) return 1;
    return std::pow(kGreatestMagnification, std::clamp(zoomRaw / maximumZoom, 0.0, 1.0));
}

void paintLectureRoom(QPainter &painter, const QRect &picture, const Pose &pose, double maximumZoom) {
    using namespace preview;

    painter.save();
    painter.setClipRect(picture, Qt::IntersectClip);
    painter.setRenderHint(QPainter::Antialiasing);
    // Antialiasing lets the background through along the seam of two walls: a dark one looks like a shadow.
    painter.fillRect(picture, QColor(0xA8, 0x8C, 0x6A));
    const Lens lens(painter, picture, pose.pan / model::kRawPerDegree, pose.tilt / model::kRawPerDegree,
                    magnification(pose.zoom, maximumZoom));

    // From far to near. The walls come first; they never hide one another from inside the room.
    drawCeiling(lens);
    drawFloor(lens);
    drawWindowWall(lens);
    drawDoorWall(lens);
    drawBackWall(lens);
    drawFrontWall(lens);
    drawBlackboard(lens);
    drawProjectionScreen(lens);
    drawTeachersCorner(lens);
    drawTiers(lens);

    paintVignette(painter, picture);
    painter.restore();
}

}  // namespace simulator
