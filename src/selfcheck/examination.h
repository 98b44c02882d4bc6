#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "selfcheck/facts.h"
#include "selfcheck/steps.h"
#include "usb/usb.h"

class UVCController;

namespace selfcheck {

class WatchedDevice;

/// Tells how the system lets programs reach the camera at a location id:
/// usb::SystemRegistry::inspectInterface() on a desktop.
using AccessInspector = std::function<std::optional<usb::InterfaceReport>(std::uint32_t locationId)>;

/// One check from beginning to end, in steps, so that a window stays alive between them. It only looks: no
/// request is ever sent that could move a camera or change a setting, and no file is written. So it cannot
/// tell whether the camera obeys; OrderTrial can.
class Examination {
 public:
    /// `patience`: see WatchedDevice.
    Examination(std::shared_ptr<const usb::DeviceRegistry> registry, AccessInspector inspector,
                std::chrono::milliseconds patience = std::chrono::milliseconds(usb::kRequestTimeout));
    ~Examination();
    Examination(const Examination &) = delete;
    Examination &operator=(const Examination &) = delete;

    /// Does a piece of the work. False when there is no piece left. It blocks for one request to the camera,
    /// or for two (minimum and maximum); after one that took too long (see WatchedDevice) nothing more is
    /// asked. Through the kernel's driver one request may be several transfers, of up to 5 s each.
    bool step();

    /// What has been found so far.
    [[nodiscard]] const Facts &facts() const { return facts_; }

 private:
    using Slot = std::optional<FieldValues> ControlFacts::*;

    void lookAtBus();
    void planControl(ControlFacts &facts, const char *name);
    /// Runs `ask` and adds what went wrong meanwhile to the control's failures.
    void asking(ControlFacts &facts, const std::function<void()> &ask);
    void readInfo(ControlFacts &facts, std::size_t row);
    void readRange(ControlFacts &facts, std::size_t row);
    void readValue(ControlFacts &facts, std::size_t row, Slot slot);

    std::shared_ptr<const usb::DeviceRegistry> registry_;
    AccessInspector inspector_;
    std::chrono::milliseconds patience_;
    Facts facts_;
    Steps steps_;
    std::shared_ptr<const WatchedDevice> device_;  // the camera that is moved
    std::shared_ptr<UVCController> camera_;        // the same
};

}  // namespace selfcheck
