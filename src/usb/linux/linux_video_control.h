#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "usb/libusb/libusb_device.h"
#include "usb/libusb/libusb_video_control.h"
#include "usb/usb.h"
#include "usb/v4l2/sysfs_interface.h"
#include "usb/v4l2/v4l2_video_control.h"

namespace usb {

/// A VideoControl interface on Linux, which chooses its backend at open(): V4L2 while a kernel driver,
/// whatever its name, holds the interface and offers video nodes for it; libusb, which claims the interface,
/// elsewhere. Where a driver holds it without a node, that claim ends as Outcome::busy. No driver is ever
/// taken off: that would end the picture of whatever program is streaming.
///
/// A driver that comes between two openings changes the backend of the second; none can come while libusb has
/// the interface. One that goes changes the backend of the next request.
///
/// The first time in the life of the process that a file may not be opened, one line on standard error says
/// which, for the technician who looks why the camera does not move.
class LinuxVideoControl : public VideoControl {
 public:
    /// `usbFile`: the device's own node, of which libusb makes use.
    LinuxVideoControl(std::unique_ptr<VideoControl> libusb, const v4l2::SysfsInterface &interface,
                      std::string usbFile);
    LinuxVideoControl(const LinuxVideoControl &) = delete;
    LinuxVideoControl &operator=(const LinuxVideoControl &) = delete;

    [[nodiscard]] std::uint8_t interfaceNumber() const override { return libusb_->interfaceNumber(); }
    [[nodiscard]] std::span<const std::uint8_t> classDescriptors() const override {
        return libusb_->classDescriptors();
    }
    [[nodiscard]] Outcome open() override;
    [[nodiscard]] Outcome close() override;
    [[nodiscard]] Outcome controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) override;

 private:
    [[nodiscard]] Outcome openThroughLibusb();

    std::unique_ptr<VideoControl> libusb_;
    V4l2VideoControl v4l2_;
    std::string usbFile_;
    VideoControl *opened_ = nullptr;  // libusb_ or v4l2_
};

/// The VideoControl interface of the device's active configuration; null when there is none.
[[nodiscard]] std::unique_ptr<VideoControl> findLinuxVideoControl(const LibusbDevice &device);

/// Where sysfs has the device's VideoControl interface; nothing when libusb cannot tell the device's ports.
[[nodiscard]] std::optional<v4l2::SysfsInterface> sysfsInterfaceOf(const LibusbDevice &device,
                                                                   const LibusbVideoControl &control);

/// "/dev/bus/usb/003/012".
[[nodiscard]] std::string usbFileOf(const LibusbDevice &device);

}  // namespace usb
