#include "usb/v4l2/sysfs_interface.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include "usb/v4l2/video_node.h"

namespace usb::v4l2 {

namespace {

namespace fs = std::filesystem;

std::optional<unsigned> numberIn(std::string_view text) {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

/// A number that sysfs has in a file of its own. Read without a stream, which takes longer than the rest.
std::optional<unsigned> attribute(const std::string &path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::array<char, 16> text{};
    const ssize_t length = ::read(file.number(), text.data(), text.size());
    if (length <= 0) return std::nullopt;
    const std::string_view line(text.data(), static_cast<std::size_t>(length));
    return numberIn(line.substr(0, line.find('\n')));
}

struct DirectoryDeleter {
    void operator()(DIR *directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryDeleter>;

/// 4 for "video4"; nothing for the names of other kinds of node.
std::optional<unsigned> videoNumber(std::string_view name) {
    constexpr std::string_view kPrefix = "video";
    if (!name.starts_with(kPrefix)) return std::nullopt;
    return numberIn(name.substr(kPrefix.size()));
}

}  // namespace

SysfsInterface::SysfsInterface(std::string deviceDirectory, std::uint8_t deviceNumber,
                               std::uint8_t configuration, std::uint8_t interfaceNumber)
    : deviceDirectory_(std::move(deviceDirectory)),
      directory_(deviceDirectory_ + deviceDirectory_.substr(deviceDirectory_.rfind('/')) + ":" +
                 std::to_string(configuration) + "." + std::to_string(interfaceNumber)),
      deviceNumber_(deviceNumber) {}

bool SysfsInterface::isPresent() const {
    return attribute(deviceDirectory_ + "/devnum") == deviceNumber_;
}

std::optional<std::string> SysfsInterface::driver() const {
    std::error_code error;
    const fs::path link = fs::read_symlink(directory_ + "/driver", error);
    if (error) return std::nullopt;
    return link.filename().string();
}

std::vector<std::string> SysfsInterface::videoNodes() const {
    std::vector<unsigned> numbers;
    const Directory directory(::opendir((directory_ + "/video4linux").c_str()));
    if (!directory) return {};
    while (const dirent *const entry = ::readdir(directory.get()))
        if (const auto number = videoNumber(entry->d_name)) numbers.push_back(*number);

    std::ranges::sort(numbers);
    std::vector<std::string> nodes;
    nodes.reserve(numbers.size());
    for (const unsigned number : numbers) nodes.push_back("/dev/video" + std::to_string(number));
    return nodes;
}

}  // namespace usb::v4l2
