#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace usb::v4l2 {

/// One USB interface as the kernel shows it in sysfs. Nothing is kept: each question looks anew. Once the
/// device was unplugged, another may stand in its place and be the one that answers: isPresent() tells. Needs
/// no rights.
class SysfsInterface {
 public:
    /// `deviceDirectory`: of the device, e.g. "/sys/bus/usb/devices/3-1.4"; `deviceNumber`: the address that
    /// the kernel gave it on its bus, which a device plugged in later does not share; `configuration`: the
    /// active one (bConfigurationValue).
    SysfsInterface(std::string deviceDirectory, std::uint8_t deviceNumber, std::uint8_t configuration,
                   std::uint8_t interfaceNumber);

    /// The driver that holds the interface; nothing when none does.
    [[nodiscard]] std::optional<std::string> driver() const;

    /// The video nodes under the interface, e.g. "/dev/video0", the lowest number first. A camera has
    /// several, and only one of them takes pictures.
    [[nodiscard]] std::vector<std::string> videoNodes() const;

    /// Whether the device is still the one that this object is about.
    [[nodiscard]] bool isPresent() const;

 private:
    std::string deviceDirectory_;
    std::string directory_;  // the interface's own, e.g. "/sys/bus/usb/devices/3-1.4/3-1.4:1.0"
    std::uint8_t deviceNumber_;
};

}  // namespace usb::v4l2
