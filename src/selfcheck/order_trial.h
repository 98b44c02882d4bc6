#pragma once

#include <memory>

#include "selfcheck/facts.h"
#include "selfcheck/steps.h"
#include "usb/usb.h"

class UVCController;

namespace selfcheck {

class WatchedDevice;

/// Finds out whether the camera that a check has found obeys: reads its position and sends it that position,
/// first for pan and tilt, then for the zoom. A camera that stands still stays where it is. Through the
/// kernel's driver the position may be the last one that this computer sent, and not that of a remote
/// control.
class OrderTrial {
 public:
    /// `facts`: of a check that has found the camera that is moved (Facts::moved).
    OrderTrial(const std::shared_ptr<const usb::DeviceRegistry> &registry, const Facts &facts);
    ~OrderTrial();
    OrderTrial(const OrderTrial &) = delete;
    OrderTrial &operator=(const OrderTrial &) = delete;

    /// Tries one control. False when there is none left. It blocks for one reading and one order; nothing
    /// more is sent to a camera that has left one of them unanswered.
    bool step();

    /// What has come of it so far.
    [[nodiscard]] const TrialFacts &facts() const { return facts_; }

 private:
    [[nodiscard]] OrderFacts tryControl(const char *name, const ControlFacts &control);
    [[nodiscard]] usb::Outcome lastOutcome() const;

    TrialFacts facts_;
    Steps steps_;
    std::shared_ptr<const WatchedDevice> device_;  // null when the camera is gone
    std::shared_ptr<UVCController> camera_;        // the same
};

}  // namespace selfcheck
