#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "usb/usb.h"
#include "usb/v4l2/control_table.h"
#include "usb/v4l2/sysfs_interface.h"
#include "usb/v4l2/video_node.h"

namespace usb {

/// A VideoControl interface that the kernel's uvcvideo driver holds: class requests become V4L2 control
/// calls, so that the driver stays where it is and a program that streams is not disturbed. open() opens the
/// camera's video node, looked up anew each time, and close() closes it.
///
/// Outcome::refused answers whatever V4L2 has no way to say: a control that the kernel does not map, GET_LEN,
/// a setting outside the camera's limits (which the kernel would bend to fit) and, of the exposure mode,
/// GET_MIN and GET_MAX. The kernel rounds a setting to the camera's resolution, counted from its minimum.
///
/// A request waits for what the driver sends on its behalf: one or two transfers, and those that read the
/// ranges at the first use of a control. The driver ends each after 5 s, and a camera that has not answered
/// one is not asked for the next. A camera that says "not ready" is asked again for kRequestTimeout at most.
class V4l2VideoControl : public VideoControl {
 public:
    /// `classDescriptors`: see classDescriptors().
    V4l2VideoControl(v4l2::SysfsInterface interface, std::uint8_t interfaceNumber,
                     std::vector<std::uint8_t> classDescriptors);

    [[nodiscard]] std::uint8_t interfaceNumber() const override { return interfaceNumber_; }
    [[nodiscard]] std::span<const std::uint8_t> classDescriptors() const override {
        return classDescriptors_;
    }

    /// Outcome::busy where a driver holds the interface without a video node for it.
    [[nodiscard]] Outcome open() override;
    [[nodiscard]] Outcome close() override;
    [[nodiscard]] Outcome controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) override;

    /// The file that the latest open() tried or opened; empty: none.
    [[nodiscard]] const std::string &path() const { return path_; }

 private:
    using Deadline = v4l2::VideoNode::Deadline;
    using Rows = std::span<const v4l2::Row>;

    /// The rows that serve a request, or none where V4L2 cannot say it.
    [[nodiscard]] Rows rowsFor(const SetupPacket &setup) const;

    [[nodiscard]] Outcome set(Rows rows, std::span<const std::uint8_t> data, Deadline deadline) const;
    [[nodiscard]] Outcome getCurrent(Rows rows, std::span<std::uint8_t> data, Deadline deadline) const;
    [[nodiscard]] Outcome getInfo(Rows rows, std::span<std::uint8_t> data, Deadline deadline) const;
    [[nodiscard]] Outcome getExposureModes(const v4l2::Row &row, std::span<std::uint8_t> data,
                                           Deadline deadline) const;
    [[nodiscard]] Outcome getLimit(std::uint8_t request, Rows rows, std::span<std::uint8_t> data,
                                   Deadline deadline) const;
    /// Whether the camera's limits allow the number: done, refused, or that the camera is not there.
    [[nodiscard]] Outcome checkLimits(const v4l2::Row &row, std::int32_t number, Deadline deadline) const;

    v4l2::SysfsInterface interface_;
    std::uint8_t interfaceNumber_;
    std::vector<std::uint8_t> classDescriptors_;
    std::optional<v4l2::VideoNode> node_;
    std::string path_;
};

}  // namespace usb
