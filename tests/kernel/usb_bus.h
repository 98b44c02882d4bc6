#pragma once

#include <optional>
#include <string>
#include <vector>

/// What the running kernel says about the cameras on its USB buses, and the commands for its camera driver.
namespace guest {

/// The sysfs names ("1-1") of the configured cameras of the supported model, by bus and port.
[[nodiscard]] std::vector<std::string> camerasOnBus();

/// The sysfs name ("1-1:1.0") of a camera's VideoControl interface.
[[nodiscard]] std::string videoControlInterface(const std::string &camera);

/// The node ("/dev/video0") that gives the camera's picture; absent while uvcvideo does not hold the camera.
[[nodiscard]] std::optional<std::string> captureNode(const std::string &camera);

/// The camera's own file under /dev/bus/usb.
[[nodiscard]] std::string usbNode(const std::string &camera);

void loadDriver();
void unloadDriver();
/// Takes the camera away from uvcvideo, or gives it back; waits until that is done.
void unbindDriver(const std::string &camera);
void bindDriver(const std::string &camera);

}  // namespace guest
