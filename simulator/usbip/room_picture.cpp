#include "simulator/usbip/room_picture.h"

#include <QPainter>
#include <algorithm>

#include "simulator/camera_descriptors.h"
#include "simulator/preview/lecture_room.h"

namespace simulator::usbip {

namespace {

/// A sum in 1/256 about `zero`, rounded, as a byte.
std::uint8_t level(int sum, int zero) {
    return static_cast<std::uint8_t>(std::clamp(((sum + 128) >> 8) + zero, 0, 255));
}

std::uint8_t luma(QRgb pixel) {
    return level(66 * qRed(pixel) + 129 * qGreen(pixel) + 25 * qBlue(pixel), 16);
}

bool isSame(const Pose &a, const Pose &b) {
    return std::equal_to<>()(a.pan, b.pan) && std::equal_to<>()(a.tilt, b.tilt) &&
           std::equal_to<>()(a.zoom, b.zoom);
}

}  // namespace

std::vector<std::uint8_t> yuy2(const QImage &picture) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(picture.width()) * static_cast<std::size_t>(picture.height()) * 2);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x + 1 < picture.width(); x += 2) {
            const QRgb left = picture.pixel(x, y);
            const QRgb right = picture.pixel(x + 1, y);
            const int red = (qRed(left) + qRed(right)) / 2;
            const int green = (qGreen(left) + qGreen(right)) / 2;
            const int blue = (qBlue(left) + qBlue(right)) / 2;
            bytes.push_back(luma(left));
            bytes.push_back(level(-38 * red - 74 * green + 112 * blue, 128));
            bytes.push_back(luma(right));
            bytes.push_back(level(112 * red - 94 * green - 18 * blue, 128));
        }
    }
    return bytes;
}

const std::vector<std::uint8_t> &RoomPicture::of(const CameraModel &camera) {
    const Pose pose = camera.pose();
    if (!bytes_.empty() && isSame(pose, pose_)) return bytes_;

    QImage picture(kFrameWidth, kFrameHeight, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    paintLectureRoom(painter, picture.rect(), pose, camera.maximum().zoom);
    painter.end();
    pose_ = pose;
    bytes_ = yuy2(picture);
    return bytes_;
}

}  // namespace simulator::usbip
