#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "scenes/scene_check.h"
#include "selfcheck/field_values.h"
#include "usb/interface_report.h"
#include "usb/usb.h"

/// What a check has found out, before anything is said about it. Plain values.
namespace selfcheck {

/// A request that failed.
struct FailedRequest {
    std::uint8_t code = 0;  ///< bRequest
    usb::Outcome outcome = usb::Outcome::failed;
};

/// What is said of one of a camera's controls: by the camera, or by the kernel's driver, which may answer
/// from its memory (usesKernelDriver()). Absent values were not answered, or not asked.
struct ControlFacts {
    bool isOffered = false;  ///< by the camera's descriptors
    bool maySet = true;      ///< GET_INFO says that it can be set
    std::optional<FieldValues> minimum;
    std::optional<FieldValues> maximum;
    std::optional<FieldValues> resolution;
    std::optional<FieldValues> defaultValue;
    std::optional<FieldValues> current;
    std::vector<FailedRequest> failures;
};

/// One camera on the bus.
struct CameraFacts {
    std::string name;  ///< empty: it has none, or it cannot be read
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::optional<std::uint32_t> locationId;
    bool isSupported = false;  ///< of a model that is moved
    bool isUsable = false;     ///< the camera library can read its VideoControl descriptors
};

/// How a control was tried: it was to be sent the position that it reports.
struct OrderFacts {
    enum class Stage {
        reading,       ///< the position could not be read: nothing was sent
        outsideRange,  ///< the position is outside the control's own range: nothing was sent
        ordering       ///< the order was sent
    };
    Stage stage = Stage::reading;
    usb::Outcome outcome = usb::Outcome::failed;  ///< of the reading or of the order
    std::chrono::milliseconds duration{0};        ///< of the order

    [[nodiscard]] bool wasObeyed() const { return stage == Stage::ordering && outcome == usb::Outcome::done; }
};

/// What came of a trial; controls that the camera does not offer are absent.
struct TrialFacts {
    std::optional<OrderFacts> panTilt;
    std::optional<OrderFacts> zoom;
};

struct Facts {
    bool busWasRead = false;
    std::vector<CameraFacts> cameras;  ///< in the bus's order; devices that are no cameras are left out

    /// Index of the camera that is moved, which is the only one that is asked; the rest is about it.
    std::optional<std::size_t> moved;
    std::optional<usb::InterfaceReport> access;  ///< absent where the system cannot tell
    std::optional<usb::Outcome> givenUp;         ///< why it was not asked any further
    /// Given up (as timed out) because a request took longer than usb::kRequestTimeout, however it ended.
    bool isTooSlow = false;
    std::chrono::milliseconds slowest{0};  ///< its slowest answer to GET_CUR, without the opening
    ControlFacts panTilt;
    ControlFacts zoom;
    std::optional<TrialFacts> trial;  ///< absent: it was given no order

    scenes::StoreCheck store;
};

/// Whether the camera is reached through the kernel's driver. It keeps limits, and on many cameras positions,
/// in its memory: a reading is one transfer to the camera, or several, or none. An order always reaches the
/// camera.
[[nodiscard]] inline bool usesKernelDriver(const Facts &facts) {
    return facts.access && facts.access->holder == usb::Holder::cameraDriver;
}

}  // namespace selfcheck
