#pragma once

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

/// A VideoControl header of bcdUVC 1.10 with `units` behind it; wTotalLength is right.
Bytes withHeader(const std::vector<Bytes> &units);
/// A camera terminal's and a processing unit's descriptor with these bmControls.
Bytes cameraTerminal(const Bytes &controls);
Bytes processingUnit(const Bytes &controls);

/// A device that answers by a script and keeps what it was asked. Shared by its registry entry and its
/// interfaces.
struct Script {
    std::uint8_t interfaceNumber = 3;
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
    int interfacesAlive = 0;
    bool isOpen = false;
};

struct Ids {
    std::optional<std::uint16_t> vendorId = 0x1234;
    std::optional<std::uint16_t> productId = 0x56AB;
    std::optional<std::uint32_t> locationId = 0x01200000;
    std::optional<std::string> name = "Sala";
};

std::shared_ptr<const usb::Device> device(std::shared_ptr<Script> script, Ids ids = {});

/// A registry of these devices in this order; nothing when `devices` is nothing.
std::shared_ptr<const usb::DeviceRegistry> registry(
    std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices);

}  // namespace scripted
