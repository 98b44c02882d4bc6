#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "simulator/camera_controls.h"
#include "simulator/camera_options.h"
#include "simulator/motor.h"
#include "usb/usb.h"

namespace simulator {

/// Where a lens points, in the camera's raw units: pan and tilt in 1/3600 degree (pan positive to the right,
/// tilt positive upwards), zoom from 0 (widest) to the maximum of zoom-abs.
struct Pose {
    double pan = 0;
    double tilt = 0;
    double zoom = 0;
};

/// One control request that reached the camera.
struct Transfer {
    usb::SetupPacket setup;
    std::vector<std::uint8_t> data;  ///< what was sent (SET_CUR) or answered (GET_*), in wire order
    bool accepted = false;
};

/// A UVC pan-tilt-zoom camera: its descriptors, its controls and the motors behind them. It knows nothing of
/// how requests reach it, so the same camera stands behind the in-process registry and behind a real bus. Not
/// thread-safe.
class CameraModel {
 public:
    /// The time that the motors run by.
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit CameraModel(CameraOptions options = {}, Clock clock = &std::chrono::steady_clock::now);

    [[nodiscard]] const CameraOptions &options() const { return options_; }

    /// The standard device descriptor, 18 bytes (USB 2.0, section 9.6.1).
    [[nodiscard]] std::vector<std::uint8_t> deviceDescriptor() const;
    /// The whole configuration descriptor, class-specific descriptors included.
    [[nodiscard]] std::vector<std::uint8_t> configurationDescriptor() const;
    /// The class-specific descriptors of the VideoControl interface, a part of the above.
    [[nodiscard]] std::vector<std::uint8_t> videoControlDescriptors() const;
    [[nodiscard]] std::uint8_t videoControlInterface() const;

    /// Answers one class request addressed to the VideoControl interface. Fills `data` for a GET and reads it
    /// for a SET_CUR. True: accepted; false: the camera stalls (or is unplugged, see isUnplugged()). GET_CUR
    /// of pan-tilt-abs and zoom-abs answers where the camera is heading, not where it stands.
    [[nodiscard]] bool controlRequest(const usb::SetupPacket &setup, std::span<std::uint8_t> data);

    /// How many bytes the camera really sends of an accepted answer of `asked` bytes. The caller cuts the
    /// answer, as it also waits for the delay below.
    [[nodiscard]] std::size_t answeredBytes(std::size_t asked) const {
        return options_.shortAnswers ? (asked + 1) / 2 : asked;
    }

    /// Where the lens stands now: on its way while the motors run.
    [[nodiscard]] Pose pose() const;
    /// Where it is heading (where it stands, once there).
    [[nodiscard]] Pose target() const;
    [[nodiscard]] bool isMoving() const;
    /// The limits of each axis, raw units.
    [[nodiscard]] Pose minimum() const;
    [[nodiscard]] Pose maximum() const;

    /// From now on, stalls (or no longer stalls) one kind of request.
    void refuse(const RequestKey &key, bool refused = true);

    /// How long the camera takes to answer; 0 at first. controlRequest() itself answers at once: its caller
    /// waits, and gives up on a request that takes longer than its timeout.
    void setAnswerDelay(std::chrono::milliseconds delay) { answerDelay_ = delay; }
    [[nodiscard]] std::chrono::milliseconds answerDelay() const { return answerDelay_; }

    /// The cable comes out after `requests` more requests, accepted or not; 0: now.
    void unplugAfter(int requests) { requestsLeft_ = requests; }
    [[nodiscard]] bool isUnplugged() const { return requestsLeft_ == 0; }
    /// The cable is in again, for good.
    void plugIn() { requestsLeft_.reset(); }

    /// The latest requests, oldest first. After some thousands the older half is forgotten.
    [[nodiscard]] const std::vector<Transfer> &transfers() const { return transfers_; }
    /// How many accepted requests of kind `request` (bRequest) reached selector `selector` of unit `unit`.
    [[nodiscard]] int count(std::uint8_t unit, std::uint8_t selector, std::uint8_t request) const;
    void forgetTransfers() { transfers_.clear(); }

 private:
    using ControlKey = std::pair<std::uint8_t, std::uint8_t>;  // unit, selector

    [[nodiscard]] bool answer(const usb::SetupPacket &setup, std::span<std::uint8_t> data);
    [[nodiscard]] bool set(const Control &control, std::span<const std::uint8_t> data);
    [[nodiscard]] std::vector<std::uint8_t> get(const Control &control, std::uint8_t request) const;
    [[nodiscard]] std::vector<std::uint8_t> current(const Control &control) const;
    void record(Transfer transfer);

    CameraOptions options_;
    Clock clock_;
    std::map<ControlKey, std::vector<std::uint8_t>> settings_;
    Motor pan_;
    Motor tilt_;
    Motor zoom_;
    std::chrono::milliseconds answerDelay_{0};
    std::optional<int> requestsLeft_;
    std::vector<Transfer> transfers_;
};

}  // namespace simulator
