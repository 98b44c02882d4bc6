#pragma once

#include <QImage>
#include <cstdint>
#include <vector>

#include "simulator/camera_model.h"

namespace simulator::usbip {

/// The picture as YUY2 (USB Video Class 1.1, Uncompressed Payload, section 2.2): two bytes a pixel, colour
/// shared by two neighbours, BT.601 with the narrow range of video. The width must be even.
[[nodiscard]] std::vector<std::uint8_t> yuy2(const QImage &picture);

/// Draws what cameras see, of the size that their descriptors promise. Draws again only when a camera has
/// moved, so that one that stands still costs nothing.
class RoomPicture {
 public:
    [[nodiscard]] const std::vector<std::uint8_t> &of(const CameraModel &camera);

 private:
    Pose pose_;
    std::vector<std::uint8_t> bytes_;
};

}  // namespace simulator::usbip
