#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <span>
#include <utility>

#include "model/camera_models.h"
#include "simulator/bytes.h"
#include "simulator/camera_controls.h"
#include "simulator/motor.h"

namespace simulator {

/// Where a lens points, in the camera's raw units: pan and tilt in 1/3600 degree (pan positive to the right,
/// tilt positive upwards), zoom from 0 (widest) to the maximum of zoom-abs.
struct Pose {
    double pan = 0;
    double tilt = 0;
    double zoom = 0;
};

/// The time that the motors run by.
using Clock = std::function<std::chrono::steady_clock::time_point()>;

/// The camera terminal and the processing unit of a camera without faults: the settings and the motors behind
/// them.
class CameraUnits {
 public:
    CameraUnits(const model::Record &record, Clock clock);

    /// False: the control does not take this value.
    [[nodiscard]] bool set(const Control &control, std::span<const std::uint8_t> data);

    /// The answer to a GET request; empty: there is no such request. GET_CUR of pan-tilt-abs and zoom-abs
    /// answers where the camera is heading, not where it stands.
    [[nodiscard]] Bytes get(const Control &control, std::uint8_t request) const;

    /// Where the lens stands now: on its way while the motors run.
    [[nodiscard]] Pose pose() const;
    /// Where it is heading (where it stands, once there).
    [[nodiscard]] Pose target() const;
    [[nodiscard]] bool isMoving() const;

 private:
    using ControlKey = std::pair<std::uint8_t, std::uint8_t>;  // unit, selector

    Clock clock_;
    std::map<ControlKey, Bytes> settings_;
    Motor pan_;
    Motor tilt_;
    Motor zoom_;
};

}  // namespace simulator
