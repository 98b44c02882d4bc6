#include "usb/libusb/sysfs_name.h"

#include <fstream>

namespace usb {

std::string sysfsDirectory(std::uint8_t bus, std::span<const std::uint8_t> ports) {
    const std::string allDevices = "/sys/bus/usb/devices/";
    if (ports.empty()) return allDevices + "usb" + std::to_string(bus);

    std::string name = allDevices + std::to_string(bus);
    char separator = '-';
    for (const std::uint8_t port : ports) {
        name += separator;
        name += std::to_string(port);
        separator = '.';
    }
    return name;
}

std::optional<std::string> productNameFromSysfs(std::uint8_t bus, std::span<const std::uint8_t> ports) {
    std::ifstream file(sysfsDirectory(bus, ports) + "/product");
    std::string name;
    if (!std::getline(file, name) || name.empty()) return std::nullopt;
    return name;
}

}  // namespace usb
