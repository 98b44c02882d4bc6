#pragma once

#include <QRect>

#include "simulator/camera_model.h"

class QPainter;

namespace simulator {

/// The end of the zoom range unless the camera says otherwise, raw units.
inline constexpr double kUsualMaximumZoom = model::kRecords.front().zoom.maximum;

/// How much larger than at zoom 0 things look: 1 to 10, growing by the same factor with each raw unit.
[[nodiscard]] double magnification(double zoomRaw, double maximumZoom = kUsualMaximumZoom);

/// Paints what a camera in the middle of a lecture room sees at `pose` (raw units) into `picture`. The field
/// is 60 degrees wide at zoom 0. Pan 0, tilt 0 looks straight at the blackboard. Leaves the painter as it
/// was.
void paintLectureRoom(QPainter &painter, const QRect &picture, const Pose &pose,
                      double maximumZoom = kUsualMaximumZoom);

}  // namespace simulator
