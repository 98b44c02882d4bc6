#include "usb/fake_usbfs.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace fake {

namespace {

/// A hub of one interface without further ado.
DeviceImage hubImage() {
    return {{0x12, 0x01, 0x00, 0x02, 0x09, 0x00, 0x01, 0x40, 0x6B, 0x1D, 0x02, 0x00, 0x00, 0x01, 0x00, 0x00,
             0x00, 0x01},
            {0x09, 0x02, 0x19, 0x00, 0x01, 0x01, 0x00, 0xE0, 0x00, 0x09, 0x04, 0x00, 0x00,
             0x01, 0x09, 0x00, 0x00, 0x00, 0x07, 0x05, 0x81, 0x03, 0x01, 0x00, 0x0C},
            "",
            true};
}

std::string hex(const std::vector<std::uint8_t> &bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

/// The path below /sys, as umockdev's descriptions name devices.
std::string withoutSys(const std::string &path) {
    const std::string prefix = "/sys";
    return path.starts_with(prefix) ? path.substr(prefix.size()) : path;
}

std::string padded(int number) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%03d", number);
    return text.data();
}

}  // namespace

DeviceImage keyboardImage() {
    return {{0x12, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x08, 0x27, 0x06, 0x01, 0x00, 0x00, 0x01, 0x00, 0x00,
             0x00, 0x01},
            {0x09, 0x02, 0x22, 0x00, 0x01, 0x01, 0x00, 0xA0, 0x32, 0x09, 0x04, 0x00,
             0x00, 0x01, 0x03, 0x01, 0x01, 0x00, 0x09, 0x21, 0x11, 0x01, 0x00, 0x01,
             0x22, 0x3F, 0x00, 0x07, 0x05, 0x81, 0x03, 0x08, 0x00, 0x0A},
            "Teclado",
            true};
}

Usbfs::Usbfs() : testbed_(umockdev_testbed_new()) {
    if (umockdev_in_mock_environment() != TRUE) {
        std::fputs("this program needs umockdev-wrapper\n", stderr);
        std::abort();
    }
}

Usbfs::~Usbfs() {
    for (const auto &[camera, plugged] : cameras_) {
        for (const std::string &node : videoNodesOf(camera))
            umockdev_testbed_detach_ioctl(testbed_.get(), node.c_str(), nullptr);
        umockdev_testbed_detach_ioctl(testbed_.get(), plugged.devnode.c_str(), nullptr);
    }
}

void Usbfs::plug(const Camera &camera, std::uint8_t bus, const Ports &ports) {
    const DeviceImage image{camera->deviceDescriptor(), camera->configurationDescriptor(),
                            camera->options().productName, true};
    camera->plugIn();
    auto [syspath, devnode] = addDevice(image, bus, ports);
    auto node = std::make_unique<UsbNode>(camera);
    umockdev_testbed_attach_ioctl(testbed_.get(), devnode.c_str(), node->handler(), nullptr);
    cameras_[camera] = {std::move(syspath), std::move(devnode), std::move(node), nullptr};
}

void Usbfs::unplug(const Camera &camera) {
    Plugged &plugged = cameras_.at(camera);
    plugged.node->pullOut();
    removeDriver(plugged);
    umockdev_testbed_uevent(testbed_.get(), plugged.syspath.c_str(), "remove");
    umockdev_testbed_remove_device(testbed_.get(), plugged.syspath.c_str());
    retired_.push_back(std::move(plugged.node));
    cameras_.erase(camera);
}

void Usbfs::plugImage(const DeviceImage &image, std::uint8_t bus, const Ports &ports) {
    addDevice(image, bus, ports);
}

UsbNode &Usbfs::nodeOf(const Camera &camera) {
    return *cameras_.at(camera).node;
}

std::string Usbfs::nodeFileOf(const Camera &camera) {
    return fileOf(cameras_.at(camera).devnode);
}

std::string Usbfs::fileOf(const std::string &node) const {
    char *root = umockdev_testbed_get_root_dir(testbed_.get());
    std::string path = root + node;
    g_free(root);
    return path;
}

int Usbfs::claimedInterfaces() const {
    int claimed = 0;
    for (const auto &[camera, plugged] : cameras_) claimed += plugged.node->claimedInterfaces();
    return claimed;
}

void Usbfs::bindDriver(const Camera &camera, bool metadataFirst) {
    Plugged &plugged = cameras_.at(camera);
    plugged.node->holdElsewhere();

    auto bound = std::make_unique<Bound>();
    const std::string device = plugged.syspath.substr(plugged.syspath.rfind('/') + 1);
    bound->interfacePath =
        plugged.syspath + "/" + device + ":1." + std::to_string(camera->videoControlInterface());
    addText("P: " + withoutSys(bound->interfacePath) +
            "\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_interface\nL: driver=../../../../bus/usb/drivers/uvcvideo\n");

    bound->driver = std::make_unique<Uvcvideo>(camera);
    std::array handlers{bound->driver->captureHandler(), bound->driver->metadataHandler()};
    if (metadataFirst) std::ranges::reverse(handlers);
    for (UMockdevIoctlBase *handler : handlers) addVideoNode(*bound, handler);
    plugged.bound = std::move(bound);
}

void Usbfs::addVideoNode(Bound &bound, UMockdevIoctlBase *handler) {
    const std::string name = "video" + std::to_string(nextVideoNumber_++);
    bound.nodePaths.push_back(bound.interfacePath + "/video4linux/" + name);
    bound.nodes.push_back("/dev/" + name);
    addText("P: " + withoutSys(bound.nodePaths.back()) + "\nN: " + name +
            "\nE: SUBSYSTEM=video4linux\nE: DEVNAME=/dev/" + name + "\n");
    umockdev_testbed_attach_ioctl(testbed_.get(), bound.nodes.back().c_str(), handler, nullptr);
}

void Usbfs::unbindDriver(const Camera &camera) {
    removeDriver(cameras_.at(camera));
    cameras_.at(camera).node->holdElsewhere(false);
}

void Usbfs::removeDriver(Plugged &plugged) {
    if (!plugged.bound) return;
    const std::unique_ptr<Bound> bound = std::move(plugged.bound);
    bound->driver->pullOut();
    for (const std::string &path : bound->nodePaths)
        umockdev_testbed_remove_device(testbed_.get(), path.c_str());
    umockdev_testbed_remove_device(testbed_.get(), bound->interfacePath.c_str());
    retiredDrivers_.push_back(std::move(bound->driver));
}

Uvcvideo &Usbfs::driverOf(const Camera &camera) {
    return *cameras_.at(camera).bound->driver;
}

std::vector<std::string> Usbfs::videoNodesOf(const Camera &camera) const {
    const Plugged &plugged = cameras_.at(camera);
    return plugged.bound ? plugged.bound->nodes : std::vector<std::string>();
}

std::pair<std::string, std::string> Usbfs::addDevice(const DeviceImage &image, std::uint8_t bus,
                                                     const Ports &ports) {
    const std::string syspath = addHubs(bus, ports);
    return {syspath, addToTree(image, syspath, bus, ++lastDeviceNumber_)};
}

std::string Usbfs::addHubs(std::uint8_t bus, const Ports &ports) {
    const auto addHub = [&](const std::string &path) {
        if (hubs_.insert(path).second) addToTree(hubImage(), path, bus, ++lastDeviceNumber_);
    };
    std::string path = "/devices/pci0000:00/usb" + std::to_string(bus);
    addHub(path);

    std::string name = std::to_string(bus) + "-";
    for (std::size_t tier = 0; tier < ports.size(); ++tier) {
        if (tier > 0) name += ".";
        name += std::to_string(ports[tier]);
        path += "/" + name;
        if (tier + 1 < ports.size()) addHub(path);
    }
    return "/sys" + path;
}

std::string Usbfs::addToTree(const DeviceImage &image, const std::string &syspath, std::uint8_t bus,
                             int number) {
    const std::string node = "bus/usb/" + padded(bus) + "/" + padded(number);
    std::vector<std::uint8_t> descriptors = image.deviceDescriptor;
    descriptors.insert(descriptors.end(), image.configuration.begin(), image.configuration.end());

    std::string text = "P: " + withoutSys(syspath) + "\n";
    text += "N: " + node + "\n";
    text += "E: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: DEVNAME=/dev/" + node + "\n";
    text += "A: busnum=" + std::to_string(bus) + "\\n\n";
    text += "A: devnum=" + std::to_string(number) + "\\n\n";
    text += "A: speed=480\\n\n";
    text += std::string("A: bConfigurationValue=") + (image.configured ? "1" : "") + "\\n\n";
    if (!image.product.empty()) text += "A: product=" + image.product + "\\n\n";
    text += "H: descriptors=" + hex(descriptors) + "\n";

    addText(text);
    return "/dev/" + node;
}

void Usbfs::addText(const std::string &text) {
    GError *error = nullptr;
    if (umockdev_testbed_add_from_string(testbed_.get(), text.c_str(), &error) != TRUE) {
        std::fprintf(stderr, "umockdev: %s\n", error->message);
        std::abort();
    }
}

}  // namespace fake
