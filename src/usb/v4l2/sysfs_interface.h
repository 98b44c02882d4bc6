#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace usb::v4l2 {

/// One USB interface as the kernel shows it in sysfs. Nothing is kept: each question looks anew, and is
/// answered as for a device that is gone once the device itself was unplugged, even if another stands in its
/// place by now. Needs no rights.
class SysfsInterface {
 public:
    /// `deviceDirectory`: of the device, e.g. "/sys/bus/usb/devices/3-1.4"; `deviceNumber`: the address that
    /// the kernel gave it on its bus, which a device plugged in later does not share.
    SysfsInterface(std::string deviceDirectory, std::uint8_t deviceNumber, std::uint8_t interfaceNumber);

    /// The driver that holds the interface; nothing when none does or the device is gone.
    [[nodiscard]] std::optional<std::string> driver() const;

    /// The video nodes under the interface, e.g. "/dev/video0", the lowest number first. A camera has
    /// several, and only one of them takes pictures.
    [[nodiscard]] std::vector<std::string> videoNodes() const;

    /// Whether the device is still the one that this object is about.
    [[nodiscard]] bool isPresent() const;

 private:
    /// The interface's own directory, which carries the number of the active configuration in its name.
    [[nodiscard]] std::optional<std::string> directory() const;

    std::string deviceDirectory_;
    std::uint8_t deviceNumber_;
    std::uint8_t interfaceNumber_;
};

}  // namespace usb::v4l2
