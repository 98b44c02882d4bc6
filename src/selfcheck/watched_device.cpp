#include "selfcheck/watched_device.h"

#include <utility>

namespace selfcheck {
namespace {

using Clock = std::chrono::steady_clock;
using usb::Outcome;

constexpr std::uint8_t kDeviceToHost = 0x80;  // bit 7 of bmRequestType (USB 2.0, section 9.3)

bool isOutOfReach(Outcome outcome) {
    return outcome == Outcome::timedOut || outcome == Outcome::disconnected;
}

/// How many transfers the kernel's driver may make of a request.
constexpr int mostTransfers(std::uint8_t code) {
    constexpr int kLimits = 4;
    return code == usb::request::kGetCur || code == usb::request::kSetCur ? 1 : kLimits;
}

class WatchedVideoControl : public usb::VideoControl {
 public:
    WatchedVideoControl(std::unique_ptr<usb::VideoControl> interface, WatchedDevice::Orders orders,
                        std::chrono::milliseconds patience, std::shared_ptr<RequestLog> log)
        : interface_(std::move(interface)), orders_(orders), patience_(patience), log_(std::move(log)) {}

    [[nodiscard]] std::uint8_t interfaceNumber() const override { return interface_->interfaceNumber(); }
    [[nodiscard]] std::span<const std::uint8_t> classDescriptors() const override {
        return interface_->classDescriptors();
    }

    [[nodiscard]] Outcome open() override {
        if (log_->givenUp) return *log_->givenUp;
        const Outcome outcome = interface_->open();
        if (outcome != Outcome::done) log_->givenUp = outcome;
        return outcome;
    }

    [[nodiscard]] Outcome close() override { return interface_->close(); }

    [[nodiscard]] Outcome controlRequest(const usb::SetupPacket &setup,
                                         std::span<std::uint8_t> data) override {
        const bool isOrder = (setup.requestType & kDeviceToHost) == 0;
        if (isOrder && orders_ == WatchedDevice::Orders::refused) return Outcome::failed;
        if (log_->givenUp) return *log_->givenUp;

        const auto start = Clock::now();
        const Outcome outcome = interface_->controlRequest(setup, data);
        const auto duration = Clock::now() - start;
        log_->requests.push_back(
            {setup.request, outcome, std::chrono::duration_cast<std::chrono::milliseconds>(duration)});
        if (isOutOfReach(outcome)) {
            log_->givenUp = outcome;
        } else if (duration > mostTransfers(setup.request) * patience_) {
            log_->givenUp = Outcome::timedOut;
            log_->isTooSlow = true;
        }
        return outcome;
    }

 private:
    std::unique_ptr<usb::VideoControl> interface_;
    WatchedDevice::Orders orders_;
    std::chrono::milliseconds patience_;
    std::shared_ptr<RequestLog> log_;
};

}  // namespace

std::unique_ptr<usb::VideoControl> WatchedDevice::videoControl() const {
    auto interface = device_->videoControl();
    if (!interface) return nullptr;
    return std::make_unique<WatchedVideoControl>(std::move(interface), orders_, patience_, log_);
}

}  // namespace selfcheck
