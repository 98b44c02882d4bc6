#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "simulator/bytes.h"
#include "usb/usb.h"

/// The messages of USB/IP 1.1.1 as the kernel documents them (Documentation/usb/usbip_protocol.rst): numbers
/// big-endian, except the setup packet, which stays in USB's order. Pure functions; what they decode comes
/// from a socket and may be anything.
namespace simulator::usbip {

inline constexpr std::uint16_t kUsualPort = 3240;
inline constexpr std::uint16_t kVersion = 0x0111;

// A connection starts with operations: list the devices, or import one. From a successful import on it
// carries commands for that device and nothing else.

inline constexpr std::uint16_t kListRequest = 0x8005;
inline constexpr std::uint16_t kImportRequest = 0x8003;
inline constexpr std::size_t kOperationBytes = 8;  ///< header; an import request goes on with the bus id
inline constexpr std::size_t kBusIdBytes = 32;

struct Operation {
    std::uint16_t version = 0;
    std::uint16_t code = 0;
};

[[nodiscard]] Operation decodeOperation(std::span<const std::uint8_t, kOperationBytes> bytes);

/// The text before the first zero byte, or all of it.
[[nodiscard]] std::string decodeBusId(std::span<const std::uint8_t, kBusIdBytes> bytes);

enum class ImportStatus : std::uint32_t { ok = 0, notAvailable = 1, busy = 2, noDevice = 4 };

/// One device on offer.
struct Export {
    std::string busId;  ///< at most 31 bytes
    std::uint32_t busNumber = 1;
    std::uint32_t deviceNumber = 1;
    Bytes deviceDescriptor;         ///< 18 bytes
    Bytes configurationDescriptor;  ///< with all that follows it
};

[[nodiscard]] Bytes encodeList(std::span<const Export> devices);
[[nodiscard]] Bytes encodeImport(const Export &device);
[[nodiscard]] Bytes encodeImportRefusal(ImportStatus status);

inline constexpr std::size_t kCommandBytes = 48;

/// More than any transfer to this camera needs. A longer one is refused.
inline constexpr std::uint32_t kMostTransferBytes = 1u << 20;

/// One transfer to perform. For a transfer to the device its `length` bytes follow the command.
struct Submit {
    std::uint32_t sequence = 0;
    std::uint32_t endpoint = 0;  ///< number, 0 to 15
    bool toHost = false;
    std::uint32_t length = 0;
    usb::SetupPacket setup;  ///< endpoint 0 only
};

/// The transfer of number `target` is to be cancelled.
struct Unlink {
    std::uint32_t sequence = 0;
    std::uint32_t target = 0;
};

using Command = std::variant<Submit, Unlink>;

/// Nothing: not a command for a camera without isochronous endpoints. Where the next one would begin is then
/// unknown, so the connection must end.
[[nodiscard]] std::optional<Command> decodeCommand(std::span<const std::uint8_t, kCommandBytes> bytes);

/// How a transfer ended: Linux error numbers, the same on every machine.
inline constexpr std::int32_t kDone = 0;
inline constexpr std::int32_t kStalled = -32;    // -EPIPE
inline constexpr std::int32_t kUnlinked = -104;  // -ECONNRESET

/// `actualLength` counts the bytes sent to the device, or is data.size().
[[nodiscard]] Bytes encodeSubmitReply(std::uint32_t sequence, std::int32_t status, std::uint32_t actualLength,
                                      std::span<const std::uint8_t> data = {});
[[nodiscard]] Bytes encodeUnlinkReply(std::uint32_t sequence, std::int32_t status);

}  // namespace simulator::usbip
