#pragma once

#include <cstdint>

#include "usb/usb.h"

/// The parts of a setup packet: of bmRequestType (USB 2.0, table 9-2), and of wValue and wIndex in the class
/// requests to a video interface (USB Video Class 1.1, section 4.1).
namespace simulator {

namespace request = usb::request;

inline constexpr std::uint8_t kToHost = 0x80;
inline constexpr std::uint8_t kStandardRequest = 0x00;
inline constexpr std::uint8_t kClassRequest = 0x20;
inline constexpr std::uint8_t kToDevice = 0;
inline constexpr std::uint8_t kToInterface = 1;
inline constexpr std::uint8_t kToEndpoint = 2;

[[nodiscard]] constexpr bool isAnswered(const usb::SetupPacket &setup) {
    return (setup.requestType & kToHost) != 0;
}
[[nodiscard]] constexpr std::uint8_t kindOf(const usb::SetupPacket &setup) {
    return setup.requestType & 0x60;
}
[[nodiscard]] constexpr std::uint8_t recipientOf(const usb::SetupPacket &setup) {
    return setup.requestType & 0x1F;
}
[[nodiscard]] constexpr bool isInterfaceClassRequest(const usb::SetupPacket &setup) {
    return kindOf(setup) == kClassRequest && recipientOf(setup) == kToInterface;
}

[[nodiscard]] constexpr std::uint8_t selectorOf(const usb::SetupPacket &setup) {
    return static_cast<std::uint8_t>(setup.value >> 8);
}
/// 0: the interface itself.
[[nodiscard]] constexpr std::uint8_t unitOf(const usb::SetupPacket &setup) {
    return static_cast<std::uint8_t>(setup.index >> 8);
}
[[nodiscard]] constexpr std::uint8_t interfaceOf(const usb::SetupPacket &setup) {
    return static_cast<std::uint8_t>(setup.index & 0xFF);
}

}  // namespace simulator
