#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "usb/usb.h"

namespace selfcheck {

/// One request that was put to a device.
struct WatchedRequest {
    std::uint8_t code = 0;  ///< bRequest
    usb::Outcome outcome = usb::Outcome::done;
    std::chrono::milliseconds duration{0};  ///< without the opening
};

/// What a device was asked. Shared by the device and its interfaces.
struct RequestLog {
    std::vector<WatchedRequest> requests;
    /// Why nothing more is asked of the device: it did not open, gave no answer in time, or is gone.
    std::optional<usb::Outcome> givenUp;
    /// Given up (as Outcome::timedOut) because one request took too long, however it ended.
    bool isTooSlow = false;
};

/// A device whose requests are watched: it passes them on to another device, notes how each ended, and gives
/// up after the first that shows the device to be out of reach, so that a dead camera costs one timeout and
/// not a dozen.
///
/// A request that takes too long counts as such a sign too: the kernel's driver waits up to 5 s for each
/// transfer, so that a nearly dead camera would block for long without a single timeout. Too long is more
/// than `patience` for GET_CUR and SET_CUR, and four times that for the other requests, for which the driver
/// may have to read all four limits of the control.
class WatchedDevice : public usb::Device {
 public:
    enum class Orders {
        refused,  ///< anything but a GET fails without being sent: the device can be read, not moved
        sent
    };

    explicit WatchedDevice(std::shared_ptr<const usb::Device> device, Orders orders,
                           std::chrono::milliseconds patience)
        : device_(std::move(device)),
          orders_(orders),
          patience_(patience),
          log_(std::make_shared<RequestLog>()) {}

    [[nodiscard]] const RequestLog &log() const { return *log_; }

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const override { return device_->vendorId(); }
    [[nodiscard]] std::optional<std::uint16_t> productId() const override { return device_->productId(); }
    [[nodiscard]] std::optional<std::uint32_t> locationId() const override { return device_->locationId(); }
    [[nodiscard]] std::optional<std::string> registryName() const override { return device_->registryName(); }
    [[nodiscard]] std::unique_ptr<usb::VideoControl> videoControl() const override;

 private:
    std::shared_ptr<const usb::Device> device_;
    Orders orders_;
    std::chrono::milliseconds patience_;
    std::shared_ptr<RequestLog> log_;
};

}  // namespace selfcheck
