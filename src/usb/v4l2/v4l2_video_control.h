#pragma once

#include <cstdint>
#include <map>
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
/// calls, so that the driver stays where it is and a program that streams is not disturbed. The first open()
/// opens the camera's video node, and this object keeps it to its end: an open node excludes nobody, and to
/// open it costs more than a request. One that has answered as gone is looked up anew at the next opening.
///
/// Outcome::refused answers what V4L2 cannot say: a control that the kernel does not map, GET_LEN,
/// a speed or an exposure mode that the camera does not have (the kernel would take another) and, of the
/// exposure mode, GET_MIN and GET_MAX. Any other setting outside the camera's limits goes to the nearest one.
/// The kernel rounds a setting to the camera's resolution, counted from its minimum.
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

    /// Outcome::busy where there is no video node for the interface.
    [[nodiscard]] Outcome open() override;
    [[nodiscard]] Outcome close() override;
    [[nodiscard]] Outcome controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) override;

    /// Whether a driver offers video nodes for the interface now.
    [[nodiscard]] bool isOffered() const { return !interface_.videoNodes().empty(); }
    /// The file that open() tried or opened; empty: none.
    [[nodiscard]] const std::string &path() const { return path_; }

 private:
    using Patience = v4l2::Patience;
    using Rows = std::span<const v4l2::Row>;

    /// The rows that serve a request, or none where V4L2 cannot say it.
    [[nodiscard]] Rows rowsFor(const SetupPacket &setup) const;

    /// What comes of a request whose length fits its data.
    [[nodiscard]] Outcome perform(const SetupPacket &setup, std::span<std::uint8_t> data);
    [[nodiscard]] Outcome set(Rows rows, std::span<const std::uint8_t> data, Patience &patience);
    [[nodiscard]] Outcome getCurrent(Rows rows, std::span<std::uint8_t> data, Patience &patience) const;
    [[nodiscard]] Outcome getInfo(Rows rows, std::span<std::uint8_t> data, Patience &patience);
    [[nodiscard]] Outcome getExposureModes(const v4l2::Row &row, std::span<std::uint8_t> data,
                                           Patience &patience) const;
    [[nodiscard]] Outcome getLimit(std::uint8_t request, Rows rows, std::span<std::uint8_t> data,
                                   Patience &patience);
    /// Moves the number into the camera's limits: done, refused, or that the camera is not there.
    [[nodiscard]] Outcome applyLimits(const v4l2::Row &row, std::int32_t &number, Patience &patience);

    /// What the driver says of a control: now, or when it was last asked. Limits never change, flags do.
    [[nodiscard]] Outcome describe(const v4l2::Row &row, v4l2_query_ext_ctrl &control, Patience &patience);
    [[nodiscard]] Outcome recall(const v4l2::Row &row, v4l2_query_ext_ctrl &control, Patience &patience);

    v4l2::SysfsInterface interface_;
    std::uint8_t interfaceNumber_;
    std::vector<std::uint8_t> classDescriptors_;
    std::optional<v4l2::VideoNode> node_;
    std::string path_;
    std::map<std::uint32_t, v4l2_query_ext_ctrl> descriptions_;  // by V4L2 control
    bool isOpen_ = false;
    bool isGone_ = false;  // the node has said so
};

}  // namespace usb
