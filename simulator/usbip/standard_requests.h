#pragma once

#include <cstdint>
#include <optional>

#include "simulator/camera_model.h"
#include "simulator/usbip/protocol.h"

namespace simulator::usbip {

/// The requests that every USB device answers (USB 2.0, section 9.4), for a camera with one configuration and
/// interfaces of one setting each. Its endpoints never halt.
class StandardRequests {
 public:
    /// `camera` must outlive this.
    explicit StandardRequests(const CameraModel &camera) : camera_(&camera) {}

    /// The answer, not yet cut to wLength (empty for a request that has none); nothing: a stall.
    [[nodiscard]] std::optional<Bytes> answer(const usb::SetupPacket &setup);

    /// As after plugging in: not configured.
    void reset() { configuration_ = 0; }

 private:
    [[nodiscard]] std::optional<Bytes> answerDevice(const usb::SetupPacket &setup);
    [[nodiscard]] std::optional<Bytes> answerInterface(const usb::SetupPacket &setup) const;
    [[nodiscard]] std::optional<Bytes> descriptor(std::uint16_t typeAndIndex) const;

    const CameraModel *camera_;
    std::uint8_t configuration_ = 0;
};

}  // namespace simulator::usbip
