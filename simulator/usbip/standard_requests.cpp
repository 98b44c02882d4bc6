#include "simulator/usbip/standard_requests.h"

#include <string_view>

#include "simulator/camera_descriptors.h"
#include "simulator/requests.h"

namespace simulator::usbip {

namespace {

constexpr std::uint16_t kEndpointHalt = 0;

/// A string descriptor says its own length in one byte.
constexpr std::size_t kMostStringUnits = 126;

/// The next character of well-formed UTF-8 (a product name of our own); takes it off `text`.
char32_t takeCharacter(std::string_view &text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    char32_t character = more == 0 ? lead : lead & (0x3Fu >> more);
    text.remove_prefix(1);
    for (std::size_t i = 0; i < more && !text.empty(); ++i) {
        character = character << 6 | (static_cast<unsigned char>(text.front()) & 0x3Fu);
        text.remove_prefix(1);
    }
    return character;
}

std::vector<std::uint16_t> utf16(std::string_view text) {
    std::vector<std::uint16_t> units;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        if (character < 0x10000) {
            units.push_back(static_cast<std::uint16_t>(character));
            continue;
        }
        const char32_t beyond = character - 0x10000;
        units.push_back(static_cast<std::uint16_t>(0xD800 | (beyond >> 10 & 0x3FF)));
        units.push_back(static_cast<std::uint16_t>(0xDC00 | (beyond & 0x3FF)));
    }
    return units;
}

/// USB 2.0, section 9.6.7. String 0 holds the languages in the same way as the others hold text.
Bytes stringDescriptor(std::vector<std::uint16_t> units) {
    constexpr std::uint8_t kString = 0x03;
    if (units.size() > kMostStringUnits) units.resize(kMostStringUnits);
    ByteWriter bytes(std::endian::little);
    bytes.u1(0).u1(kString);
    for (const std::uint16_t unit : units) bytes.u2(unit);
    return bytes.asDescriptor();
}

bool isEndpoint(std::uint16_t address) {
    return address == 0 || address == kStatusEndpoint || address == kVideoEndpoint;
}

std::optional<Bytes> answerEndpoint(const usb::SetupPacket &setup) {
    if (!isEndpoint(setup.index)) return std::nullopt;
    if (setup.request == kGetStatus) return Bytes{0, 0};
    if (setup.request == kClearFeature && setup.value == kEndpointHalt) return Bytes{};
    return std::nullopt;
}

}  // namespace

std::optional<Bytes> StandardRequests::answer(const usb::SetupPacket &setup) {
    switch (recipientOf(setup)) {
        case kToDevice:
            return answerDevice(setup);
        case kToInterface:
            return answerInterface(setup);
        case kToEndpoint:
            return answerEndpoint(setup);
        default:
            return std::nullopt;
    }
}

std::optional<Bytes> StandardRequests::answerDevice(const usb::SetupPacket &setup) {
    switch (setup.request) {
        case kGetStatus:
            return Bytes{0, 0};  // powered by the bus, no remote wakeup
        case kSetAddress:
            return Bytes{};  // behind USB/IP only the host knows the address
        case kGetDescriptor:
            return descriptor(setup.value);
        case kGetConfiguration:
            return Bytes{configuration_};
        case kSetConfiguration:
            if (setup.value > kConfigurationValue) return std::nullopt;
            configuration_ = static_cast<std::uint8_t>(setup.value);
            return Bytes{};
        default:
            return std::nullopt;
    }
}

std::optional<Bytes> StandardRequests::answerInterface(const usb::SetupPacket &setup) const {
    if (setup.index > videoStreamingInterface(camera_->options())) return std::nullopt;
    switch (setup.request) {
        case kGetStatus:
            return Bytes{0, 0};
        case kGetInterface:
            return Bytes{0};
        case kSetInterface:
            // The only alternate setting; uvcvideo chooses it before it negotiates.
            return setup.value == 0 ? std::optional(Bytes{}) : std::nullopt;
        default:
            return std::nullopt;
    }
}

std::optional<Bytes> StandardRequests::descriptor(std::uint16_t typeAndIndex) const {
    constexpr std::uint16_t kDevice = 0x0100;
    constexpr std::uint16_t kConfiguration = 0x0200;
    constexpr std::uint16_t kLanguages = 0x0300;
    constexpr std::uint16_t kSpanish = 0x0C0A;
    switch (typeAndIndex) {
        case kDevice:
            return camera_->deviceDescriptor();
        case kConfiguration:
            return camera_->configurationDescriptor();
        case kLanguages:
            return stringDescriptor({kSpanish});
        case kLanguages + kProductString:
            return stringDescriptor(utf16(camera_->options().productName));
        default:
            return std::nullopt;
    }
}

}  // namespace simulator::usbip
