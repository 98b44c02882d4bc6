#pragma once

#include <string_view>

#include "simulator/preview/surface.h"

namespace simulator::preview {

/// The inside of the room, in metres from the lens.
namespace room {
inline constexpr double kLeft = -6.0;
inline constexpr double kRight = 6.0;
inline constexpr double kFront = 5.5;
inline constexpr double kBack = -8.4;
inline constexpr double kFloor = -1.6;
inline constexpr double kCeiling = 2.3;
}  // namespace room

/// The parts of the room. Each draws over what lies behind it, so their order matters (see paintLectureRoom).
void drawFloor(const Lens &lens);
void drawCeiling(const Lens &lens);
void drawFrontWall(const Lens &lens);  ///< with the blackboard
void drawBackWall(const Lens &lens);
void drawWindowWall(const Lens &lens);  ///< on the right
void drawDoorWall(const Lens &lens);    ///< on the left, with posters and clock
void drawBlackboard(const Lens &lens);
void drawProjectionScreen(const Lens &lens);
void drawTeachersCorner(const Lens &lens);  ///< desk, laptop, lectern and the teacher
void drawTiers(const Lens &lens);           ///< rows of desks with the students

/// A student seated with the crown of the head at `top`. `number` chooses looks: equal numbers, equal looks.
void drawStudent(const Lens &lens, Vector top, unsigned number);
/// The teacher, standing with the crown of the head at `top`.
void drawTeacher(const Lens &lens, Vector top);

/// Writes with chalk strokes on `surface`: letters of 100 mm times `size`, the first one's top left at
/// `where`.
void writeStrokes(const Surface &surface, std::string_view text, QPointF where, double size,
                  const QColor &colour, double lineWidth);

}  // namespace simulator::preview
