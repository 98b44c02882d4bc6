#pragma once

#include <chrono>

namespace simulator {

/// One axis of the camera. Its position is computed from its last order and the time, so it needs no
/// timer. It speeds up evenly, travels at its rated speed and slows down evenly.
class Motor {
 public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// `speed` in units a second, above zero; `position` is where it stands at first.
    Motor(double speed, double position) : speed_(speed), start_(position), target_(position) {}

    /// Heads for `target` from wherever it stands at `now`. An order for the target it already has changes
    /// nothing.
    void moveTo(double target, TimePoint now);

    [[nodiscard]] double position(TimePoint now) const;
    [[nodiscard]] double target() const { return target_; }
    [[nodiscard]] bool isMoving(TimePoint now) const;

 private:
    [[nodiscard]] double secondsSinceStart(TimePoint now) const;
    [[nodiscard]] double travelSeconds() const;

    double speed_;
    double start_;
    double target_;
    TimePoint startTime_{};
};

}  // namespace simulator
