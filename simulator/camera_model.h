#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "simulator/bytes.h"
#include "simulator/camera_options.h"
#include "simulator/camera_units.h"
#include "usb/usb.h"

namespace simulator {

/// One control request that reached the camera.
struct Transfer {
    usb::SetupPacket setup;
    Bytes data;  ///< what was sent (SET_CUR) or answered (GET_*), in wire order
    bool accepted = false;
};

/// A UVC pan-tilt-zoom camera as a host meets it. It forwards every control request to its units, and breaks
/// it on the way as its options say: late, short, refused, altered, or not at all because the cable is out.
/// It does so for whatever carries the requests: the same camera, with the same faults, stands behind the
/// in-process bus and behind a real one. Not thread-safe.
class CameraModel {
 public:
    explicit CameraModel(CameraOptions options = {}, Clock clock = &std::chrono::steady_clock::now);

    [[nodiscard]] const CameraOptions &options() const { return options_; }

    /// The standard device descriptor, 18 bytes (USB 2.0, section 9.6.1).
    [[nodiscard]] Bytes deviceDescriptor() const;
    /// The whole configuration descriptor, class-specific descriptors included.
    [[nodiscard]] Bytes configurationDescriptor() const;
    /// The class-specific descriptors of the VideoControl interface, a part of the above.
    [[nodiscard]] Bytes videoControlDescriptors() const;
    [[nodiscard]] std::uint8_t videoControlInterface() const { return options_.videoControlInterface; }

    /// How long the camera takes over a request to its VideoControl interface. Whoever carries the request
    /// waits that long before controlRequest(), and leaves that out when the host gives up sooner.
    [[nodiscard]] std::chrono::milliseconds answerDelay(const usb::SetupPacket &setup);

    /// Performs one request to the VideoControl interface at once. Fills `data` for a GET and reads it for a
    /// SET_CUR. Answers how many bytes of it went over the bus; nothing: the camera stalls, or is gone (see
    /// isUnplugged()).
    [[nodiscard]] std::optional<std::size_t> controlRequest(const usb::SetupPacket &setup,
                                                            std::span<std::uint8_t> data);

    /// Where the lens stands now, on its way while the motors run; and where it is heading.
    [[nodiscard]] Pose pose() const { return units_.pose(); }
    [[nodiscard]] Pose target() const { return units_.target(); }
    [[nodiscard]] bool isMoving() const { return units_.isMoving(); }
    /// The limits of each axis, raw units.
    [[nodiscard]] Pose minimum() const { return limits(&model::Range::minimum); }
    [[nodiscard]] Pose maximum() const { return limits(&model::Range::maximum); }

    /// From now on, stalls (or no longer stalls) one kind of request.
    void refuse(const RequestKey &key, bool refused = true);

    /// From now on, takes this long over every request.
    void setAnswerDelay(std::chrono::milliseconds delay) { options_.answerDelay = delay; }

    /// The cable comes out after `requests` more requests, accepted or not; 0: now.
    void unplugAfter(int requests) { requestsLeft_ = requests; }
    [[nodiscard]] bool isUnplugged() const { return requestsLeft_ == 0; }
    /// The cable is in again, and a camera that hung has started anew.
    void plugIn();

    /// The latest requests, oldest first. After some thousands the older half is forgotten.
    [[nodiscard]] const std::vector<Transfer> &transfers() const { return transfers_; }
    /// How many accepted requests of kind `request` (bRequest) reached selector `selector` of unit `unit`.
    [[nodiscard]] int count(std::uint8_t unit, std::uint8_t selector, std::uint8_t request) const;
    void forgetTransfers() { transfers_.clear(); }

 private:
    [[nodiscard]] Pose limits(std::int32_t model::Range::*property) const;
    [[nodiscard]] bool isOrder(const usb::SetupPacket &setup) const;
    [[nodiscard]] bool answer(const usb::SetupPacket &setup, std::span<std::uint8_t> data);
    [[nodiscard]] Bytes get(const Control &control, std::uint8_t request) const;
    void record(Transfer transfer);

    CameraOptions options_;
    CameraUnits units_;
    bool hangs_ = false;
    std::optional<int> requestsLeft_;
    std::vector<Transfer> transfers_;
};

}  // namespace simulator
