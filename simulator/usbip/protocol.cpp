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

/// Takes big-endian numbers off the front. Past the end it answers zeros.
class Reader {
 public:
    explicit Reader(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    std::uint32_t number(std::size_t bytes) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i) value = value << 8 | next();
        return value;
    }
    std::uint16_t littleEndian2() {
        const std::uint32_t low = next();
        return static_cast<std::uint16_t>(low | std::uint32_t{next()} << 8);
    }
    std::uint8_t next() {
        if (rest_.empty()) return 0;
        const std::uint8_t byte = rest_.front();
        rest_ = rest_.subspan(1);
        return byte;
    }

 private:
    std::span<const std::uint8_t> rest_;
};

class Writer {
 public:
    Writer &number(std::uint32_t value, std::size_t bytes) {
        for (std::size_t i = bytes; i > 0; --i)
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * (i - 1))));
        return *this;
    }
    /// Exactly `size` bytes: cut so that a zero byte ends it, or filled up with zeros.
    Writer &text(std::string_view text, std::size_t size) {
        const std::size_t start = bytes_.size();
        for (const char c : text.substr(0, size - 1)) bytes_.push_back(static_cast<std::uint8_t>(c));
        bytes_.resize(start + size, 0);
        return *this;
    }
    Writer &raw(std::span<const std::uint8_t> bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }
    Writer &zeros(std::size_t count) {
        bytes_.resize(bytes_.size() + count, 0);
        return *this;
    }
    [[nodiscard]] Bytes finished() { return std::move(bytes_); }

 private:
    Bytes bytes_;
};

std::uint8_t byteAt(const Bytes &bytes, std::size_t at) {
    return at < bytes.size() ? bytes[at] : std::uint8_t{0};
}

std::uint32_t wordAt(const Bytes &bytes, std::size_t at) {
    return byteAt(bytes, at) | std::uint32_t{byteAt(bytes, at + 1)} << 8;
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

void writeDevice(Writer &out, const Export &device, std::size_t interfaces) {
    constexpr std::uint32_t kHighSpeed = 3;
    const Bytes &bytes = device.deviceDescriptor;
    out.text("/sys/devices/virtual/" + device.busId, 256)
        .text(device.busId, kBusIdBytes)
        .number(device.busNumber, 4)
        .number(device.deviceNumber, 4)
        .number(kHighSpeed, 4)
        .number(wordAt(bytes, 8), 2)                           // idVendor
        .number(wordAt(bytes, 10), 2)                          // idProduct
        .number(wordAt(bytes, 12), 2)                          // bcdDevice
        .number(byteAt(bytes, 4), 1)                           // bDeviceClass
        .number(byteAt(bytes, 5), 1)                           // bDeviceSubClass
        .number(byteAt(bytes, 6), 1)                           // bDeviceProtocol
        .number(byteAt(device.configurationDescriptor, 5), 1)  // bConfigurationValue
        .number(byteAt(bytes, 17), 1)                          // bNumConfigurations
        .number(static_cast<std::uint32_t>(interfaces), 1);
}

Writer operationReply(std::uint16_t code, ImportStatus status) {
    Writer out;
    out.number(kVersion, 2).number(code, 2).number(static_cast<std::uint32_t>(status), 4);
    return out;
}

/// The part that every reply to a command starts with. Device, direction and endpoint are 0: hosts go by the
/// sequence number.
Writer commandReply(std::uint32_t reply, std::uint32_t sequence, std::int32_t status) {
    Writer out;
    out.number(reply, 4).number(sequence, 4).zeros(12).number(static_cast<std::uint32_t>(status), 4);
    return out;
}

usb::SetupPacket readSetup(Reader &in) {
    usb::SetupPacket setup;
    setup.requestType = in.next();
    setup.request = in.next();
    setup.value = in.littleEndian2();
    setup.index = in.littleEndian2();
    setup.length = in.littleEndian2();
    return setup;
}

}  // namespace

Operation decodeOperation(std::span<const std::uint8_t, kOperationBytes> bytes) {
    Reader in(bytes);
    const auto version = static_cast<std::uint16_t>(in.number(2));
    return {version, static_cast<std::uint16_t>(in.number(2))};
}

std::string decodeBusId(std::span<const std::uint8_t, kBusIdBytes> bytes) {
    return {bytes.begin(), std::ranges::find(bytes, std::uint8_t{0})};
}

Bytes encodeList(std::span<const Export> devices) {
    Writer out = operationReply(kListReply, ImportStatus::ok);
    out.number(static_cast<std::uint32_t>(devices.size()), 4);
    for (const Export &device : devices) {
        const auto interfaces = interfacesOf(device.configurationDescriptor);
        writeDevice(out, device, interfaces.size());
        for (const auto &interface : interfaces) out.raw(interface).zeros(1);
    }
    return out.finished();
}

Bytes encodeImport(const Export &device) {
    Writer out = operationReply(kImportReply, ImportStatus::ok);
    writeDevice(out, device, interfacesOf(device.configurationDescriptor).size());
    return out.finished();
}

Bytes encodeImportRefusal(ImportStatus status) {
    return operationReply(kImportReply, status).finished();
}

std::optional<Command> decodeCommand(std::span<const std::uint8_t, kCommandBytes> bytes) {
    constexpr std::uint32_t kMostEndpoints = 16;
    constexpr std::uint32_t kNotIsochronous = 0xFFFFFFFF;  // older hosts say 0
    Reader in(bytes);
    const std::uint32_t command = in.number(4);
    const std::uint32_t sequence = in.number(4);
    in.number(4);  // the device: there is only one behind a connection
    const std::uint32_t direction = in.number(4);
    const std::uint32_t endpoint = in.number(4);

    const std::uint32_t first = in.number(4);
    if (command == kUnlinkCommand) return Unlink{sequence, first};
    if (command != kSubmitCommand || direction > 1 || endpoint >= kMostEndpoints) return std::nullopt;

    const std::uint32_t length = in.number(4);
    in.number(4);  // first frame, isochronous transfers only
    const std::uint32_t packets = in.number(4);
    in.number(4);  // interval
    if (length > kMostTransferBytes || (packets != 0 && packets != kNotIsochronous)) return std::nullopt;
    return Submit{sequence, endpoint, direction == 1, length, readSetup(in)};
}

Bytes encodeSubmitReply(std::uint32_t sequence, std::int32_t status, std::uint32_t actualLength,
                        std::span<const std::uint8_t> data) {
    Writer out = commandReply(kSubmitReply, sequence, status);
    out.number(actualLength, 4).zeros(20).raw(data);
    return out.finished();
}

Bytes encodeUnlinkReply(std::uint32_t sequence, std::int32_t status) {
    return commandReply(kUnlinkReply, sequence, status).zeros(24).finished();
}

}  // namespace simulator::usbip
