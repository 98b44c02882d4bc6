#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "usb/libusb/libusb_device.h"
#include "usb/usb.h"
#include "usb/v4l2/sysfs_interface.h"
#include "usb/v4l2/v4l2_video_control.h"

namespace usb {

/// A VideoControl interface on Linux, which chooses at each open() how its requests travel: through V4L2
/// while the kernel's driver holds the interface, claimed and sent through libusb while nobody does. No
/// driver is ever taken off: that would end the picture of whatever program is streaming.
///
/// A driver that comes or goes between two openings changes the way of the second. One that goes while the
/// interface is open changes the way of the next request; none can come while libusb has the interface.
///
/// The first time in the life of the process that a file may not be opened, one line on standard error says
/// which, for the technician who looks why the camera does not move.
class LinuxVideoControl : public VideoControl {
 public:
    /// `usbFile`: the device's own node, of which libusb makes use.
    LinuxVideoControl(std::unique_ptr<VideoControl> libusb, v4l2::SysfsInterface interface,
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
    [[nodiscard]] Outcome openThroughV4l2();
    [[nodiscard]] Outcome openThroughLibusb();

    std::unique_ptr<VideoControl> libusb_;
    v4l2::SysfsInterface interface_;
    V4l2VideoControl v4l2_;
    std::string usbFile_;
    VideoControl *opened_ = nullptr;  // libusb_ or v4l2_
};

/// How requests travel to a VideoControl interface.
enum class Way {
    v4l2,    ///< a kernel driver, whatever its name, holds the interface and offers video nodes for it
    libusb,  ///< nobody holds it; or somebody does without a video node, and the claim ends as Outcome::busy
};

/// The way that opening the interface now would take.
[[nodiscard]] Way chooseWay(const v4l2::SysfsInterface &interface);

/// The VideoControl interface of the device's active configuration; null when there is none.
[[nodiscard]] std::unique_ptr<VideoControl> findLinuxVideoControl(const LibusbDevice &device);

/// Where sysfs has interface `interfaceNumber` of the device; nothing when libusb cannot tell its ports.
[[nodiscard]] std::optional<v4l2::SysfsInterface> sysfsInterfaceOf(const LibusbDevice &device,
                                                                   std::uint8_t interfaceNumber);

/// "/dev/bus/usb/003/012".
[[nodiscard]] std::string usbFileOf(const LibusbDevice &device);

}  // namespace usb
