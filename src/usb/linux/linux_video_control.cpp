#include "usb/linux/linux_video_control.h"

#include <array>
#include <cstdio>
#include <utility>
#include <vector>

#include "usb/libusb/sysfs_name.h"
#include "usb/linux/denied_notice.h"

namespace usb {

namespace {

std::vector<std::uint8_t> copyOf(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

}  // namespace

LinuxVideoControl::LinuxVideoControl(std::unique_ptr<VideoControl> libusb, v4l2::SysfsInterface interface,
                                     std::string usbFile)
    : libusb_(std::move(libusb)),
      interface_(std::move(interface)),
      v4l2_(interface_, libusb_->interfaceNumber(), copyOf(libusb_->classDescriptors())),
      usbFile_(std::move(usbFile)) {}

Outcome LinuxVideoControl::open() {
    if (opened_ != nullptr) return Outcome::done;
    if (chooseWay(interface_) == Way::libusb) return openThroughLibusb();

    const Outcome outcome = openThroughV4l2();
    if (outcome == Outcome::done) return outcome;
    // The driver may have left in between, and its node with it.
    const bool driverHasLeft = interface_.isPresent() && !interface_.driver();
    return driverHasLeft ? openThroughLibusb() : outcome;
}

Outcome LinuxVideoControl::close() {
    VideoControl *const opened = std::exchange(opened_, nullptr);
    return opened == nullptr ? Outcome::done : opened->close();
}

Outcome LinuxVideoControl::controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) {
    if (opened_ == nullptr) return Outcome::failed;
    const Outcome outcome = opened_->controlRequest(setup, data);

    // A node goes with its driver. If only that has gone, the camera can still be asked, the other way.
    const bool nodeIsGone = outcome == Outcome::disconnected && opened_ == &v4l2_;
    if (!nodeIsGone || !interface_.isPresent()) return outcome;
    if (close() != Outcome::done || open() != Outcome::done) return outcome;
    return opened_->controlRequest(setup, data);
}

Outcome LinuxVideoControl::openThroughV4l2() {
    const Outcome outcome = v4l2_.open();
    if (outcome == Outcome::done) opened_ = &v4l2_;
    if (outcome == Outcome::denied) sayVideoNodeDenied(v4l2_.path());
    return outcome;
}

Outcome LinuxVideoControl::openThroughLibusb() {
    const Outcome outcome = libusb_->open();
    if (outcome == Outcome::done) opened_ = libusb_.get();
    if (outcome == Outcome::denied) sayUsbFileDenied(usbFile_);
    return outcome;
}

Way chooseWay(const v4l2::SysfsInterface &interface) {
    return interface.driver() && !interface.videoNodes().empty() ? Way::v4l2 : Way::libusb;
}

std::unique_ptr<VideoControl> findLinuxVideoControl(const LibusbDevice &device) {
    auto libusb = device.videoControl();
    if (!libusb) return nullptr;
    auto interface = sysfsInterfaceOf(device, libusb->interfaceNumber());
    if (!interface) return libusb;
    return std::make_unique<LinuxVideoControl>(std::move(libusb), std::move(*interface), usbFileOf(device));
}

std::optional<v4l2::SysfsInterface> sysfsInterfaceOf(const LibusbDevice &device,
                                                     std::uint8_t interfaceNumber) {
    if (!device.ports()) return std::nullopt;
    return v4l2::SysfsInterface(sysfsDirectory(device.busNumber(), *device.ports()), device.deviceNumber(),
                                interfaceNumber);
}

std::string usbFileOf(const LibusbDevice &device) {
    std::array<char, 32> path{};
    std::snprintf(path.data(), path.size(), "/dev/bus/usb/%03d/%03d", int{device.busNumber()},
                  int{device.deviceNumber()});
    return path.data();
}

}  // namespace usb
