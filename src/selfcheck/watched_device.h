#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "usb/usb.h"

namespace selfcheck {

/// One request that was put to a device, or that could not be because the device did not open.
struct WatchedRequest {
    std::uint8_t code = 0;  ///< bRequest
    usb::Outcome outcome = usb::Outcome::done;
    std::chrono::milliseconds duration{0};  ///< opening included
};

/// What a device was asked. Shared by the device and its interfaces.
struct RequestLog {
    std::vector<WatchedRequest> requests;
    /// Why nothing more is asked of the device: it did not open, gave no answer in time, or is gone.
    std::optional<usb::Outcome> givenUp;
    /// Given up (as Outcome::timedOut) because one request took longer than the device's patience, however it
    /// ended.
    bool isTooSlow = false;
};

/// A device that can be looked at and not moved: it passes GET requests on to another device, notes how each
/// ended, and gives up after the first that shows the device to be out of reach, so that a dead camera costs
/// one time-out and not a dozen. Whatever is no GET fails without being sent.
///
/// A request that takes longer than `patience` counts as such a sign too: the kernel's driver makes several
/// transfers of one request and waits for each by itself, so that a nearly dead camera would block for long
/// without a single time-out.
class WatchedDevice : public usb::Device {
 public:
    explicit WatchedDevice(
        std::shared_ptr<const usb::Device> device,
        std::chrono::milliseconds patience = std::chrono::milliseconds(usb::kRequestTimeout))
        : device_(std::move(device)), patience_(patience), log_(std::make_shared<RequestLog>()) {}

    [[nodiscard]] const RequestLog &log() const { return *log_; }

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const override { return device_->vendorId(); }
    [[nodiscard]] std::optional<std::uint16_t> productId() const override { return device_->productId(); }
    [[nodiscard]] std::optional<std::uint32_t> locationId() const override { return device_->locationId(); }
    [[nodiscard]] std::optional<std::string> registryName() const override { return device_->registryName(); }
    [[nodiscard]] std::unique_ptr<usb::VideoControl> videoControl() const override;

 private:
    std::shared_ptr<const usb::Device> device_;
    std::chrono::milliseconds patience_;
    std::shared_ptr<RequestLog> log_;
};

}  // namespace selfcheck
