#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "usb/usb.h"

namespace scripted {

using Bytes = std::vector<std::uint8_t>;

inline Bytes joined(Bytes first, const Bytes &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// A VideoControl header of bcdUVC 1.10 with `units` behind it; wTotalLength is right.
inline Bytes withHeader(const std::vector<Bytes> &units) {
    Bytes block = {13, 0x24, 1, 0x10, 0x01, 0, 0, 0x80, 0xC3, 0xC9, 0x01, 1, 1};
    for (const Bytes &unit : units) block = joined(block, unit);
    block[5] = static_cast<std::uint8_t>(block.size());
    return block;
}

/// A camera terminal's and a processing unit's descriptor with these bmControls.
inline Bytes cameraTerminal(const Bytes &controls) {
    const auto size = static_cast<std::uint8_t>(controls.size());
    const auto length = static_cast<std::uint8_t>(15 + size);
    return joined({length, 0x24, 2, 7, 0x01, 0x02, 0, 0, 0, 0, 0, 0, 0, 0, size}, controls);
}
inline Bytes processingUnit(const Bytes &controls) {
    const auto size = static_cast<std::uint8_t>(controls.size());
    return joined(joined({static_cast<std::uint8_t>(9 + size), 0x24, 5, 9, 7, 0, 0, size}, controls), {0});
}

/// A device that answers by a script and keeps what it was asked. Shared by its registry entry and its
/// interfaces.
struct Script {
    Bytes descriptors = withHeader({});
    bool hasVideoControl = true;

    /// (wValue >> 8, bRequest) to the answer of a GET; what is not here is refused.
    std::map<std::pair<std::uint8_t, std::uint8_t>, Bytes> answers;
    bool acceptsSets = true;
    usb::Outcome openOutcome = usb::Outcome::done;
    usb::Outcome closeOutcome = usb::Outcome::done;

    std::vector<usb::SetupPacket> setups;
    Bytes lastSent;
    int opens = 0;
    int closes = 0;
};

class ScriptedInterface : public usb::VideoControl {
 public:
    explicit ScriptedInterface(std::shared_ptr<Script> script) : script_(std::move(script)) {}

    std::uint8_t interfaceNumber() const override { return 3; }
    std::span<const std::uint8_t> classDescriptors() const override { return script_->descriptors; }
    usb::Outcome open() override {
        ++script_->opens;
        return script_->openOutcome;
    }
    usb::Outcome close() override {
        ++script_->closes;
        return script_->closeOutcome;
    }
    usb::Outcome controlRequest(const usb::SetupPacket &setup, std::span<std::uint8_t> data) override {
        script_->setups.push_back(setup);
        if ((setup.requestType & 0x80u) == 0) {
            script_->lastSent.assign(data.begin(), data.end());
            return script_->acceptsSets ? usb::Outcome::done : usb::Outcome::refused;
        }
        const auto answer =
            script_->answers.find({static_cast<std::uint8_t>(setup.value >> 8), setup.request});
        if (answer == script_->answers.end() || answer->second.size() != data.size()) {
            std::ranges::fill(data, std::uint8_t{0xEE});  // what a failure leaves is unspecified
            return usb::Outcome::refused;
        }
        std::ranges::copy(answer->second, data.begin());
        return usb::Outcome::done;
    }

 private:
    std::shared_ptr<Script> script_;
};

struct Ids {
    std::optional<std::uint16_t> vendorId = 0x1234;
    std::optional<std::uint16_t> productId = 0x56AB;
    std::optional<std::uint32_t> locationId = 0x01200000;
    std::optional<std::string> name = "Sala";
};

struct Device : usb::Device {
    explicit Device(std::shared_ptr<Script> deviceScript, Ids deviceIds = {})
        : script(std::move(deviceScript)), ids(std::move(deviceIds)) {}

    std::optional<std::uint16_t> vendorId() const override { return ids.vendorId; }
    std::optional<std::uint16_t> productId() const override { return ids.productId; }
    std::optional<std::uint32_t> locationId() const override { return ids.locationId; }
    std::optional<std::string> registryName() const override { return ids.name; }
    std::unique_ptr<usb::VideoControl> videoControl() const override {
        return script->hasVideoControl ? std::make_unique<ScriptedInterface>(script) : nullptr;
    }

    std::shared_ptr<Script> script;
    Ids ids;
};

inline std::shared_ptr<const usb::Device> device(std::shared_ptr<Script> script, Ids ids = {}) {
    return std::make_shared<Device>(std::move(script), std::move(ids));
}

}  // namespace scripted
