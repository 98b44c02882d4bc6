#include "kernel/usb_bus.h"

#include <fcntl.h>
#include <linux/videodev2.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "kernel/process.h"
#include "model/camera_models.h"

namespace guest {
namespace {

namespace fs = std::filesystem;

const fs::path kDevices = "/sys/bus/usb/devices";
const fs::path kDriver = "/sys/bus/usb/drivers/uvcvideo";

/// One attribute without its line end; empty when there is none.
std::string attribute(const fs::path &folder, const char *name) {
    std::ifstream file(folder / name);
    std::string line;
    std::getline(file, line);
    return line;
}

std::vector<std::string> namesIn(const fs::path &folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto &entry : fs::directory_iterator(folder, error))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

bool givesPicture(const std::string &node) {
    const int file = ::open(node.c_str(), O_RDWR | O_NONBLOCK);
    if (file < 0) return false;
    v4l2_capability capability{};
    const bool answered = ::ioctl(file, VIDIOC_QUERYCAP, &capability) == 0;
    ::close(file);
    return answered && (capability.device_caps & V4L2_CAP_VIDEO_CAPTURE) != 0;
}

void writeTo(const fs::path &file, const std::string &text) {
    std::ofstream(file) << text << std::flush;
}

}  // namespace

std::vector<std::string> camerasOnBus() {
    std::vector<std::string> cameras;
    for (const std::string &name : namesIn(kDevices)) {
        const fs::path device = kDevices / name;
        const std::string ids = attribute(device, "idVendor") + ":" + attribute(device, "idProduct");
        if (std::ranges::find(model::kRecords, ids, &model::Record::ids) != model::kRecords.end() &&
            attribute(device, "bConfigurationValue") == "1" && !videoControlInterface(name).empty())
            cameras.push_back(name);
    }
    return cameras;
}

std::string videoControlInterface(const std::string &camera) {
    for (const std::string &name : namesIn(kDevices)) {
        if (name.starts_with(camera + ":") && attribute(kDevices / name, "bInterfaceClass") == "0e" &&
            attribute(kDevices / name, "bInterfaceSubClass") == "01")
            return name;
    }
    return {};
}

std::optional<std::string> captureNode(const std::string &camera) {
    const std::string interface = videoControlInterface(camera);
    if (interface.empty()) return std::nullopt;
    for (const std::string &name : namesIn(kDevices / interface / "video4linux"))
        if (givesPicture("/dev/" + name)) return "/dev/" + name;
    return std::nullopt;
}

std::string usbNode(const std::string &camera) {
    char path[40];
    std::snprintf(path, sizeof path, "/dev/bus/usb/%03d/%03d",
                  std::stoi(attribute(kDevices / camera, "busnum")),
                  std::stoi(attribute(kDevices / camera, "devnum")));
    return path;
}

void loadDriver() {
    run({"modprobe", "uvcvideo"});
}

void unloadDriver() {
    // A program that has just closed a node may hold the module a moment longer.
    requireSoon("uvcvideo to go", [] {
        Background command({"modprobe", "-r", "uvcvideo"}, "command.txt");
        return command.waitForEnd(seconds(20)) == 0;
    });
}

void unbindDriver(const std::string &camera) {
    writeTo(kDriver / "unbind", videoControlInterface(camera));
    requireSoon("uvcvideo to let go", [&] { return !captureNode(camera); });
}

void bindDriver(const std::string &camera) {
    writeTo(kDriver / "bind", videoControlInterface(camera));
    requireSoon("uvcvideo to take the camera", [&] { return captureNode(camera).has_value(); });
}

}  // namespace guest
