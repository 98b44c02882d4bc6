#include "simulator/usbip/protocol.h"

#include <algorithm>

namespace simulator::usbip {

namespace {

constexpr std::uint16_t kListReply = 0x0005;
constexpr std::uint16_t kImportReply = 0x0003;

constexpr std::uint32_t kSubmitCommand = 1;
constexpr std::uint32_t kUnlinkCommand = 2;
constexpr std::uint32_t kSubmitReply = 3;
constexpr std::uint32_t kUnlinkReply = 4;

/// Exactly `size` bytes: cut so that a zero byte ends it, or filled up with zeros.
Bytes textField(std::string_view text, std::size_t size) {
    const std::string_view kept = text.substr(0, size - 1);
    Bytes bytes(kept.begin(), kept.end());
    bytes.resize(size, 0);
    return bytes;
}

std::uint8_t byteAt(const Bytes &bytes, std::size_t at) {
    return static_cast<std::uint8_t>(numberAt(bytes, at, 1, std::endian::little));
}

/// Class, subclass and protocol of each interface, as found in the descriptors.
std::vector<std::array<std::uint8_t, 3>> interfacesOf(const Bytes &configuration) {
    constexpr std::uint8_t kInterface = 0x04;
    std::vector<std::array<std::uint8_t, 3>> found;
    for (std::size_t at = 0; at + 2 <= configuration.size() && configuration[at] >= 2;
         at += configuration[at])
        if (configuration[at + 1] == kInterface)
            found.push_back({byteAt(configuration, at + 5), byteAt(configuration, at + 6),
                             byteAt(configuration, at + 7)});
    return found;
}

void writeDevice(ByteWriter &out, const Export &device, std::size_t interfaces) {
    constexpr std::uint32_t kHighSpeed = 3;
    const Bytes &bytes = device.deviceDescriptor;
    const auto word = [&](std::size_t at) { return numberAt(bytes, at, 2, std::endian::little); };
    out.raw(textField("/sys/devices/virtual/" + device.busId, 256))
        .raw(textField(device.busId, kBusIdBytes))
        .u4(device.busNumber)
        .u4(device.deviceNumber)
        .u4(kHighSpeed)
        .u2(word(8))                                    // idVendor
        .u2(word(10))                                   // idProduct
        .u2(word(12))                                   // bcdDevice
        .u1(byteAt(bytes, 4))                           // bDeviceClass
        .u1(byteAt(bytes, 5))                           // bDeviceSubClass
        .u1(byteAt(bytes, 6))                           // bDeviceProtocol
        .u1(byteAt(device.configurationDescriptor, 5))  // bConfigurationValue
        .u1(byteAt(bytes, 17))                          // bNumConfigurations
        .u1(interfaces);
}

ByteWriter operationReply(std::uint16_t code, ImportStatus status) {
    ByteWriter out(std::endian::big);
    out.u2(kVersion).u2(code).u4(static_cast<std::uint32_t>(status));
    return out;
}

/// The part that every reply to a command starts with. Device, direction and endpoint are 0: hosts go by the
/// sequence number.
ByteWriter commandReply(std::uint32_t reply, std::uint32_t sequence, std::int32_t status) {
    ByteWriter out(std::endian::big);
    out.u4(reply).u4(sequence).zeros(12).u4(static_cast<std::uint32_t>(status));
    return out;
}

std::uint32_t wordAt(std::span<const std::uint8_t> bytes, std::size_t at) {
    return numberAt(bytes, at, 4, std::endian::big);
}

usb::SetupPacket readSetup(std::span<const std::uint8_t> bytes) {
    const auto field = [&](std::size_t at) {
        return static_cast<std::uint16_t>(numberAt(bytes, at, 2, std::endian::little));
    };
    return {bytes[0], bytes[1], field(2), field(4), field(6)};
}

}  // namespace

Operation decodeOperation(std::span<const std::uint8_t, kOperationBytes> bytes) {
    const auto half = [&](std::size_t at) {
        return static_cast<std::uint16_t>(numberAt(bytes, at, 2, std::endian::big));
    };
    return {half(0), half(2)};
}

std::string decodeBusId(std::span<const std::uint8_t, kBusIdBytes> bytes) {
    return {bytes.begin(), std::ranges::find(bytes, std::uint8_t{0})};
}

Bytes encodeList(std::span<const Export> devices) {
    ByteWriter out = operationReply(kListReply, ImportStatus::ok);
    out.u4(devices.size());
    for (const Export &device : devices) {
        const auto interfaces = interfacesOf(device.configurationDescriptor);
        writeDevice(out, device, interfaces.size());
        for (const auto &interface : interfaces) out.raw(interface).zeros(1);
    }
    return out.finished();
}

Bytes encodeImport(const Export &device) {
    ByteWriter out = operationReply(kImportReply, ImportStatus::ok);
    writeDevice(out, device, interfacesOf(device.configurationDescriptor).size());
    return out.finished();
}

Bytes encodeImportRefusal(ImportStatus status) {
    return operationReply(kImportReply, status).finished();
}

std::optional<Command> decodeCommand(std::span<const std::uint8_t, kCommandBytes> bytes) {
    constexpr std::uint32_t kMostEndpoints = 16;
    constexpr std::uint32_t kNotIsochronous = 0xFFFFFFFF;  // older hosts say 0
    // Not read: the device at 8, of which there is one behind a connection, and what only isochronous and
    // interrupt transfers need.
    const std::uint32_t command = wordAt(bytes, 0);
    const std::uint32_t sequence = wordAt(bytes, 4);
    const std::uint32_t direction = wordAt(bytes, 12);
    const std::uint32_t endpoint = wordAt(bytes, 16);
    if (command == kUnlinkCommand) return Unlink{sequence, wordAt(bytes, 20)};
    if (command != kSubmitCommand || direction > 1 || endpoint >= kMostEndpoints) return std::nullopt;

    const std::uint32_t length = wordAt(bytes, 24);
    const std::uint32_t packets = wordAt(bytes, 32);
    if (length > kMostTransferBytes || (packets != 0 && packets != kNotIsochronous)) return std::nullopt;
    return Submit{sequence, endpoint, direction == 1, length, readSetup(bytes.subspan<40>())};
}

Bytes encodeSubmitReply(std::uint32_t sequence, std::int32_t status, std::uint32_t actualLength,
                        std::span<const std::uint8_t> data) {
    ByteWriter out = commandReply(kSubmitReply, sequence, status);
    out.u4(actualLength).zeros(20).raw(data);
    return out.finished();
}

Bytes encodeUnlinkReply(std::uint32_t sequence, std::int32_t status) {
    return commandReply(kUnlinkReply, sequence, status).zeros(24).finished();
}

}  // namespace simulator::usbip
