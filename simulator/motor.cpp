#include "simulator/motor.h"

#include <algorithm>
#include <cmath>

namespace simulator {

namespace {

/// Seconds from standstill to the rated speed, and back.
constexpr double kRampSeconds = 0.25;

/// Seconds of speeding up in one move: less than the whole ramp if the move is too short for full speed.
double rampSeconds(double distance, double speed) {
    return std::min(kRampSeconds, std::sqrt(distance * kRampSeconds / speed));
}

}  // namespace

void Motor::moveTo(double target, TimePoint now) {
    if (target == target_) return;
    start_ = position(now);
    target_ = target;
    startTime_ = now;
}

double Motor::position(TimePoint now) const {
    const double seconds = secondsSinceStart(now);
    const double total = travelSeconds();
    if (seconds >= total) return target_;

    const double distance = std::abs(target_ - start_);
    const double ramp = rampSeconds(distance, speed_);
    const double acceleration = speed_ / kRampSeconds;

    double travelled = 0;
    if (seconds < ramp) {
        travelled = acceleration * seconds * seconds / 2;
    } else if (seconds <= total - ramp) {
        travelled = acceleration * ramp * (seconds - ramp / 2);
    } else {
        const double left = total - seconds;
        travelled = distance - acceleration * left * left / 2;
    }
    return target_ > start_ ? start_ + travelled : start_ - travelled;
}

bool Motor::isMoving(TimePoint now) const {
    return secondsSinceStart(now) < travelSeconds();
}

double Motor::secondsSinceStart(TimePoint now) const {
    return std::max(0.0, std::chrono::duration<double>(now - startTime_).count());
}

double Motor::travelSeconds() const {
    const double distance = std::abs(target_ - start_);
    if (distance == 0) return 0;
    const double ramp = rampSeconds(distance, speed_);
    const double topSpeed = speed_ * ramp / kRampSeconds;
    return distance / topSpeed + ramp;
}

}  // namespace simulator
