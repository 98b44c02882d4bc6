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

class WatchedVideoControl : public usb::VideoControl {
 public:
    WatchedVideoControl(std::unique_ptr<usb::VideoControl> interface, std::chrono::milliseconds patience,
                        std::shared_ptr<RequestLog> log)
        : interface_(std::move(interface)), patience_(patience), log_(std::move(log)) {}

    [[nodiscard]] std::uint8_t interfaceNumber() const override { return interface_->interfaceNumber(); }
    [[nodiscard]] std::span<const std::uint8_t> classDescriptors() const override {
        return interface_->classDescriptors();
    }

    [[nodiscard]] Outcome open() override {
        if (log_->givenUp) return *log_->givenUp;
        opening_ = Clock::now();
        const Outcome outcome = interface_->open();
        if (outcome != Outcome::done) log_->givenUp = outcome;
        return outcome;
    }

    [[nodiscard]] Outcome close() override { return interface_->close(); }

    [[nodiscard]] Outcome controlRequest(const usb::SetupPacket &setup,
                                         std::span<std::uint8_t> data) override {
        if ((setup.requestType & kDeviceToHost) == 0) return Outcome::failed;
        if (log_->givenUp) return *log_->givenUp;

        const auto start = Clock::now();
        const Outcome outcome = interface_->controlRequest(setup, data);
        const auto end = Clock::now();
        log_->requests.push_back(
            {setup.request, outcome, std::chrono::duration_cast<std::chrono::milliseconds>(end - opening_)});
        if (isOutOfReach(outcome)) {
            log_->givenUp = outcome;
        } else if (end - start > patience_) {
            log_->givenUp = Outcome::timedOut;
            log_->isTooSlow = true;
        }
        return outcome;
    }

 private:
    std::unique_ptr<usb::VideoControl> interface_;
    std::chrono::milliseconds patience_;
    std::shared_ptr<RequestLog> log_;
    Clock::time_point opening_ = Clock::now();
};

}  // namespace

std::unique_ptr<usb::VideoControl> WatchedDevice::videoControl() const {
    auto interface = device_->videoControl();
    if (!interface) return nullptr;
    return std::make_unique<WatchedVideoControl>(std::move(interface), patience_, log_);
}

}  // namespace selfcheck
