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

LinuxVideoControl::LinuxVideoControl(std::unique_ptr<VideoControl> libusb,
                                     const v4l2::SysfsInterface &interface, std::string usbFile)
    : libusb_(std::move(libusb)),
      v4l2_(interface, libusb_->interfaceNumber(), copyOf(libusb_->classDescriptors())),
      usbFile_(std::move(usbFile)) {}

Outcome LinuxVideoControl::open() {
    if (opened_ != nullptr) return Outcome::done;

    const Outcome outcome = v4l2_.open();
    // The driver may have left, and its node with it, since the node was looked up.
    if (outcome != Outcome::done && !v4l2_.isOffered()) return openThroughLibusb();
    if (outcome == Outcome::done) opened_ = &v4l2_;
    if (outcome == Outcome::denied) sayVideoNodeDenied(v4l2_.path());
    return outcome;
}

Outcome LinuxVideoControl::close() {
    VideoControl *const opened = std::exchange(opened_, nullptr);
    return opened == nullptr ? Outcome::done : opened->close();
}

Outcome LinuxVideoControl::controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) {
    if (opened_ == nullptr) return Outcome::failed;
    const Outcome outcome = opened_->controlRequest(setup, data);

    // A node goes with its driver. If only that has gone, the camera can still be asked through libusb.
    const bool nodeIsGone = outcome == Outcome::disconnected && opened_ == &v4l2_;
    if (!nodeIsGone || close() != Outcome::done || open() != Outcome::done) return outcome;
    return opened_->controlRequest(setup, data);
}

Outcome LinuxVideoControl::openThroughLibusb() {
    const Outcome outcome = libusb_->open();
    if (outcome == Outcome::done) opened_ = libusb_.get();
    if (outcome == Outcome::denied) sayUsbFileDenied(usbFile_);
    return outcome;
}

std::unique_ptr<VideoControl> findLinuxVideoControl(const LibusbDevice &device) {
    auto libusb = findVideoControl(device.reference());
    if (!libusb) return nullptr;
    const auto interface = sysfsInterfaceOf(device, *libusb);
    if (!interface) return libusb;
    return std::make_unique<LinuxVideoControl>(std::move(libusb), *interface, usbFileOf(device));
}

std::optional<v4l2::SysfsInterface> sysfsInterfaceOf(const LibusbDevice &device,
                                                     const LibusbVideoControl &control) {
    if (!device.ports()) return std::nullopt;
    return v4l2::SysfsInterface(sysfsDirectory(device.busNumber(), device.ports()->ports()),
                                device.deviceNumber(), control.configuration(), control.interfaceNumber());
}

std::string usbFileOf(const LibusbDevice &device) {
    std::array<char, 32> path{};
    std::snprintf(path.data(), path.size(), "/dev/bus/usb/%03d/%03d", int{device.busNumber()},
                  int{device.deviceNumber()});
    return path.data();
}

}  // namespace usb
