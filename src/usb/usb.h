#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The seam between the camera library and whatever reaches USB devices. Nothing here throws; nothing here
/// is thread-safe: one thread, the user interface's, calls all of it.
namespace usb {

/// The eight bytes that start a control transfer (USB 2.0, section 9.3), in host order.
struct SetupPacket {
    std::uint8_t requestType = 0;  ///< bmRequestType
    std::uint8_t request = 0;      ///< bRequest
    std::uint16_t value = 0;       ///< wValue
    std::uint16_t index = 0;       ///< wIndex
    std::uint16_t length = 0;      ///< wLength, equal to the size of the data that goes with the packet

    friend bool operator==(const SetupPacket &, const SetupPacket &) = default;
};

/// bmRequestType and bRequest of the class requests to an interface (USB Video Class 1.1, section 4.1 and
/// appendix A.8).
namespace request {
inline constexpr std::uint8_t kSetRequestType = 0x21;
inline constexpr std::uint8_t kGetRequestType = 0xA1;
inline constexpr std::uint8_t kSetCur = 0x01;
inline constexpr std::uint8_t kGetCur = 0x81;
inline constexpr std::uint8_t kGetMin = 0x82;
inline constexpr std::uint8_t kGetMax = 0x83;
inline constexpr std::uint8_t kGetRes = 0x84;
inline constexpr std::uint8_t kGetLen = 0x85;
inline constexpr std::uint8_t kGetInfo = 0x86;
inline constexpr std::uint8_t kGetDef = 0x87;
}  // namespace request

/// How an operation on a device ended.
enum class Outcome {
    done,          ///< the device did all of it
    refused,       ///< the device answered no (a stall, or a value it will not take)
    timedOut,      ///< no answer in time (see kRequestTimeout), or "not ready" all that time
    disconnected,  ///< the device is gone
    denied,        ///< this user may not open the device
    busy,          ///< another driver or program holds the interface
    failed,        ///< anything else, a short answer included
};

/// Longest time, in milliseconds, that one control transfer through libusb may take before it ends as
/// Outcome::timedOut. Long enough for a slow motor controller, short enough that a dead camera does not
/// freeze the window for long. The kernel's camera driver allows 5 s for each of its transfers, and a request
/// may need several: its first use of a control reads the four limits as well. A camera that says "not
/// ready" there is asked again until this time is over.
inline constexpr unsigned kRequestTimeout = 2000;

/// The VideoControl interface of one device: the first interface of class 14, subclass 1, any protocol, any
/// alternate setting (USB Video Class 1.1, appendixes A.1 and A.2). Destroying it closes it.
class VideoControl {
 public:
    virtual ~VideoControl() = default;

    /// bInterfaceNumber.
    [[nodiscard]] virtual std::uint8_t interfaceNumber() const = 0;

    /// The class-specific descriptors that follow the interface descriptor, in wire order, as the device gave
    /// them: untrusted, possibly empty. The bytes live as long as this object.
    [[nodiscard]] virtual std::span<const std::uint8_t> classDescriptors() const = 0;

    /// Opens the interface for requests. Opening an open interface is done at once. A device that has gone
    /// may be noticed by the next request only.
    [[nodiscard]] virtual Outcome open() = 0;

    /// Gives the interface back to others. Closing a closed interface, or that of a device that is gone, is
    /// done at once. Files that exclude nobody may stay open until this object is destroyed.
    [[nodiscard]] virtual Outcome close() = 0;

    /// Performs one control transfer on pipe 0, or has the kernel's camera driver perform what comes to the
    /// same, and waits for it (see kRequestTimeout). The interface must be open, or nothing is sent
    /// (Outcome::failed).
    /// `data` is in wire order and its size is `setup.length`; it is sent (bit 7 of requestType clear) or
    /// filled (set). On anything but Outcome::done the contents of `data` are unspecified.
    [[nodiscard]] virtual Outcome controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) = 0;
};

/// One device on the bus, as the registry knows it. Holding it does not hold the device open. Its ids and its
/// place cost nothing; its name and its descriptors are read when they are asked for.
class Device {
 public:
    virtual ~Device() = default;

    [[nodiscard]] virtual std::optional<std::uint16_t> vendorId() const = 0;
    [[nodiscard]] virtual std::optional<std::uint16_t> productId() const = 0;

    /// Bus number in the top byte, then one port number a nibble from bit 20 downwards (see locationId()).
    [[nodiscard]] virtual std::optional<std::uint32_t> locationId() const = 0;

    /// The product's name; absent when the device has none or it cannot be read without rights.
    [[nodiscard]] virtual std::optional<std::string> registryName() const = 0;

    /// The device's VideoControl interface, closed; null when it has none.
    [[nodiscard]] virtual std::unique_ptr<VideoControl> videoControl() const = 0;
};

/// The devices present. Each call lists them anew, as far as the system has told of them: on Linux, libusb
/// learns of devices that come and go from udev's notices. Where no udev runs (in a container, say), a device
/// plugged in after the registry was made is never listed.
class DeviceRegistry {
 public:
    virtual ~DeviceRegistry() = default;

    /// All devices, ordered by bus and port path ascending so that "the last one" is stable between calls;
    /// nothing when the devices cannot be enumerated at all.
    [[nodiscard]] virtual std::optional<std::vector<std::shared_ptr<const Device>>> devices() const = 0;
};

/// The location id of the device behind `ports` (root port first) on bus `bus`. Ports behind the sixth tier,
/// which USB does not allow, are left out.
[[nodiscard]] constexpr std::uint32_t locationId(std::uint8_t bus, std::span<const std::uint8_t> ports) {
    std::uint32_t id = static_cast<std::uint32_t>(bus) << 24;
    for (std::size_t tier = 0; tier < ports.size() && tier < 6; ++tier)
        id |= (ports[tier] & 0xFu) << (20 - 4 * tier);
    return id;
}

}  // namespace usb
