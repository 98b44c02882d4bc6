#include "usb/v4l2/sysfs_interface.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

namespace usb::v4l2 {

namespace {

namespace fs = std::filesystem;

std::optional<unsigned> numberIn(std::string_view text) {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

std::optional<unsigned> attribute(const std::string &path) {
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line)) return std::nullopt;
    return numberIn(line);
}

/// 4 for "video4"; nothing for the names of other kinds of node.
std::optional<unsigned> videoNumber(std::string_view name) {
    constexpr std::string_view kPrefix = "video";
    if (!name.starts_with(kPrefix)) return std::nullopt;
    return numberIn(name.substr(kPrefix.size()));
}

}  // namespace

SysfsInterface::SysfsInterface(std::string deviceDirectory, std::uint8_t deviceNumber,
                               std::uint8_t interfaceNumber)
    : deviceDirectory_(std::move(deviceDirectory)),
      deviceNumber_(deviceNumber),
      interfaceNumber_(interfaceNumber) {}

bool SysfsInterface::isPresent() const {
    return attribute(deviceDirectory_ + "/devnum") == deviceNumber_;
}

std::optional<std::string> SysfsInterface::directory() const {
    if (!isPresent()) return std::nullopt;
    const auto configuration = attribute(deviceDirectory_ + "/bConfigurationValue");
    if (!configuration) return std::nullopt;

    const std::string device = fs::path(deviceDirectory_).filename().string();
    return deviceDirectory_ + "/" + device + ":" + std::to_string(*configuration) + "." +
           std::to_string(interfaceNumber_);
}

std::optional<std::string> SysfsInterface::driver() const {
    const auto interface = directory();
    if (!interface) return std::nullopt;

    std::error_code error;
    const fs::path link = fs::read_symlink(*interface + "/driver", error);
    if (error) return std::nullopt;
    return link.filename().string();
}

std::vector<std::string> SysfsInterface::videoNodes() const {
    const auto interface = directory();
    if (!interface) return {};

    std::vector<unsigned> numbers;
    std::error_code error;
    fs::directory_iterator entry(*interface + "/video4linux", error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        if (const auto number = videoNumber(entry->path().filename().string())) numbers.push_back(*number);

    std::ranges::sort(numbers);
    std::vector<std::string> nodes;
    for (const unsigned number : numbers) nodes.push_back("/dev/video" + std::to_string(number));
    return nodes;
}

}  // namespace usb::v4l2
