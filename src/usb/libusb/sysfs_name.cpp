#include "usb/libusb/sysfs_name.h"

#include <fstream>

namespace usb {

namespace {

/// "usb3" for a root hub, "3-1.4" for the device behind ports 1 and 4 of bus 3.
std::string sysfsName(std::uint8_t bus, std::span<const std::uint8_t> ports) {
    if (ports.empty()) return "usb" + std::to_string(bus);

    std::string name = std::to_string(bus);
    char separator = '-';
    for (const std::uint8_t port : ports) {
        name += separator;
        name += std::to_string(port);
        separator = '.';
    }
    return name;
}

}  // namespace

std::optional<std::string> productNameFromSysfs(std::uint8_t bus, std::span<const std::uint8_t> ports) {
    std::ifstream file("/sys/bus/usb/devices/" + sysfsName(bus, ports) + "/product");
    std::string name;
    if (!std::getline(file, name) || name.empty()) return std::nullopt;
    return name;
}

}  // namespace usb
