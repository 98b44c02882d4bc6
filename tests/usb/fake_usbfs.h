#pragma once

#include <umockdev.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "simulator/camera_model.h"
#include "usb/fake_usb_node.h"
#include "usb/fake_uvcvideo.h"

namespace fake {

using Camera = std::shared_ptr<simulator::CameraModel>;

/// What one device shows of itself.
struct DeviceImage {
    std::vector<std::uint8_t> deviceDescriptor;
    std::vector<std::uint8_t> configuration;
    std::string product;     ///< empty: no such attribute
    bool configured = true;  ///< false: no configuration is active
};

/// A device of one interface that is no camera.
[[nodiscard]] DeviceImage keyboardImage();

/// A machine's USB bus without the machine: a device tree in sysfs and device nodes in /dev/bus/usb, made by
/// umockdev, behind which simulated cameras answer what the real libusb asks through ioctl. The program must
/// run with umockdev's library preloaded. Hubs on the way to a port are added by themselves.
class Usbfs {
 public:
    using Ports = std::vector<std::uint8_t>;

    Usbfs();
    ~Usbfs();
    Usbfs(const Usbfs &) = delete;
    Usbfs &operator=(const Usbfs &) = delete;

    void plug(const Camera &camera, std::uint8_t bus, const Ports &ports);
    void unplug(const Camera &camera);
    /// Plugs in a device that stalls every request.
    void plugImage(const DeviceImage &image, std::uint8_t bus, const Ports &ports);

    /// The node behind a plugged camera.
    [[nodiscard]] UsbNode &nodeOf(const Camera &camera);
    /// The file that the camera's node has outside the fake machine.
    [[nodiscard]] std::string nodeFileOf(const Camera &camera);
    [[nodiscard]] int claimedInterfaces() const;

    /// The kernel's camera driver takes the camera's VideoControl interface. Its two nodes, of which the
    /// first one takes pictures unless `metadataFirst`, get the next numbers that no node has had yet.
    void bindDriver(const Camera &camera, bool metadataFirst = false);
    void unbindDriver(const Camera &camera);
    [[nodiscard]] Uvcvideo &driverOf(const Camera &camera);
    /// The paths of the camera's video nodes, by number, and the file of one outside the machine.
    [[nodiscard]] std::vector<std::string> videoNodesOf(const Camera &camera) const;
    [[nodiscard]] std::string fileOf(const std::string &node) const;

 private:
    /// A driver and what it has put into the tree.
    struct Bound {
        std::string interfacePath;
        std::vector<std::string> nodePaths;
        std::vector<std::string> nodes;
        std::unique_ptr<Uvcvideo> driver;
    };
    struct Plugged {
        std::string syspath;
        std::string devnode;
        std::unique_ptr<UsbNode> node;
        std::unique_ptr<Bound> bound;
    };

    /// Adds the hubs that `ports` needs and the device itself; its syspath and devnode.
    std::pair<std::string, std::string> addDevice(const DeviceImage &image, std::uint8_t bus,
                                                  const Ports &ports);
    std::string addHubs(std::uint8_t bus, const Ports &ports);
    std::string addToTree(const DeviceImage &image, const std::string &syspath, std::uint8_t bus, int number);
    void addText(const std::string &text);
    void addVideoNode(Bound &bound, UMockdevIoctlBase *handler);
    void removeDriver(Plugged &plugged);

    GObjectPtr<UMockdevTestbed> testbed_;
    std::map<Camera, Plugged> cameras_;
    std::vector<std::unique_ptr<UsbNode>> retired_;  // nodes of pulled devices, which handles may still ask
    std::vector<std::unique_ptr<Uvcvideo>> retiredDrivers_;
    std::set<std::string> hubs_;
    int lastDeviceNumber_ = 0;
    int nextVideoNumber_ = 0;
};

}  // namespace fake
