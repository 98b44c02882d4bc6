#pragma once

#include <cstdint>

#include "usb/usb.h"

/// The parts of a setup packet: of bmRequestType (USB 2.0, table 9-2), bRequest of the standard requests, and
/// what wValue and wIndex say in the class requests to a video interface (USB Video Class 1.1, section 4.1).
namespace simulator {

namespace request = usb::request;

inline constexpr std::uint8_t kToHost = 0x80;
inline constexpr std::uint8_t kStandardRequest = 0x00;
inline constexpr std::uint8_t kClassRequest = 0x20;
inline constexpr std::uint8_t kToDevice = 0;
inline constexpr std::uint8_t kToInterface = 1;
inline constexpr std::uint8_t kToEndpoint = 2;

/// bRequest of the standard requests (USB 2.0, table 9-4).
inline constexpr std::uint8_t kGetStatus = 0x00;
inline constexpr std::uint8_t kClearFeature = 0x01;
inline constexpr std::uint8_t kSetFeature = 0x03;
inline constexpr std::uint8_t kSetAddress = 0x05;
inline constexpr std::uint8_t kGetDescriptor = 0x06;
inline constexpr std::uint8_t kSetDescriptor = 0x07;
inline constexpr std::uint8_t kGetConfiguration = 0x08;
inline constexpr std::uint8_t kSetConfiguration = 0x09;
inline constexpr std::uint8_t kGetInterface = 0x0A;
inline constexpr std::uint8_t kSetInterface = 0x0B;

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
