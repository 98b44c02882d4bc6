#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "usb/usb.h"

namespace support {

/// What a BrokenBus does to the camera, and what it has seen.
struct Breakage {
    std::size_t first = ~std::size_t{0};  ///< the transfer, counted from 0, that ends as `outcome`
    usb::Outcome outcome = usb::Outcome::failed;
    usb::Outcome opening = usb::Outcome::done;  ///< how every open() ends
    usb::Outcome closing = usb::Outcome::done;
    std::vector<usb::SetupPacket> requests{};

    /// A camera that is gone stays away; whatever else breaks a transfer breaks that one.
    [[nodiscard]] usb::Outcome next(const usb::SetupPacket &setup) {
        const std::size_t number = requests.size();
        requests.push_back(setup);
        const bool isBroken = outcome == usb::Outcome::disconnected ? number >= first : number == first;
        return isBroken ? outcome : usb::Outcome::done;
    }
};

/// The devices of another bus; a transfer that is broken does not reach them.
class BrokenBus : public usb::DeviceRegistry {
 public:
    BrokenBus(std::shared_ptr<usb::DeviceRegistry> bus, std::shared_ptr<Breakage> breakage)
        : bus_(std::move(bus)), breakage_(std::move(breakage)) {}

    [[nodiscard]] std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices() const override {
        auto devices = bus_->devices();
        for (auto &device : devices.value()) device = std::make_shared<Wrapped>(device, breakage_);
        return devices;
    }

 private:
    struct Control : usb::VideoControl {
        Control(std::unique_ptr<usb::VideoControl> control, std::shared_ptr<Breakage> breakage)
            : inner(std::move(control)), broken(std::move(breakage)) {}
        std::uint8_t interfaceNumber() const override { return inner->interfaceNumber(); }
        std::span<const std::uint8_t> classDescriptors() const override { return inner->classDescriptors(); }
        usb::Outcome open() override {
            return broken->opening == usb::Outcome::done ? inner->open() : broken->opening;
        }
        usb::Outcome close() override {
            return broken->closing == usb::Outcome::done ? inner->close() : broken->closing;
        }
        usb::Outcome controlRequest(const usb::SetupPacket &setup, std::span<std::uint8_t> data) override {
            const usb::Outcome outcome = broken->next(setup);
            if (outcome == usb::Outcome::done) return inner->controlRequest(setup, data);
            std::ranges::fill(data, std::uint8_t{0xEE});  // what a failure leaves is unspecified
            return outcome;
        }
        std::unique_ptr<usb::VideoControl> inner;
        std::shared_ptr<Breakage> broken;
    };

    struct Wrapped : usb::Device {
        Wrapped(std::shared_ptr<const usb::Device> device, std::shared_ptr<Breakage> breakage)
            : inner(std::move(device)), broken(std::move(breakage)) {}
        std::optional<std::uint16_t> vendorId() const override { return inner->vendorId(); }
        std::optional<std::uint16_t> productId() const override { return inner->productId(); }
        std::optional<std::uint32_t> locationId() const override { return inner->locationId(); }
        std::optional<std::string> registryName() const override { return inner->registryName(); }
        std::unique_ptr<usb::VideoControl> videoControl() const override {
            return std::make_unique<Control>(inner->videoControl(), broken);
        }
        std::shared_ptr<const usb::Device> inner;
        std::shared_ptr<Breakage> broken;
    };

    std::shared_ptr<usb::DeviceRegistry> bus_;
    std::shared_ptr<Breakage> breakage_;
};

}  // namespace support
