#pragma once

#include <cstdint>

#include "usb/usb.h"

/// The parts of bmRequestType (USB 2.0, table 9-2).
namespace simulator::usbip {

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

}  // namespace simulator::usbip
