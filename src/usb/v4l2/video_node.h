#pragma once

#include <linux/videodev2.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "usb/usb.h"

namespace usb::v4l2 {

/// An open file of ours, closed with its owner.
class FileDescriptor {
 public:
    explicit FileDescriptor(int number) : number_(number) {}
    ~FileDescriptor();
    FileDescriptor(FileDescriptor &&other) noexcept;
    FileDescriptor &operator=(FileDescriptor &&) = delete;

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

 private:
    int number_;
};

/// How long one request asks a camera again that says "not ready": kRequestTimeout from the first such
/// answer. Until then it reads no clock: where the kernel keeps time by a device, that costs more than a
/// call.
class Patience {
 public:
    /// Waits a moment. False, without waiting, when the time is over.
    [[nodiscard]] bool waitOnceMore();

 private:
    std::optional<std::chrono::steady_clock::time_point> end_;
};

/// An open /dev/videoN, of which only the controls are used: no stream is touched, so that the node may be
/// another program's source of pictures all the while. The one place that calls ioctl.
///
/// A call gives 0 or what ended in errno. A camera that says "not ready" (EBUSY) is asked again while
/// `patience` lasts. A single try is not cut short: it lasts as long as the driver's transfers do, each of
/// which the driver ends after 5 s.
class VideoNode {
 public:
    explicit VideoNode(FileDescriptor file) : file_(std::move(file)) {}

    /// Whether this is a node that takes pictures, and not the camera's metadata node, say. Sends the camera
    /// nothing.
    [[nodiscard]] int takesPictures(bool &answer) const;

    /// Range, default and flags of the control `control.id`, from the camera at the first time and from the
    /// driver's memory later.
    [[nodiscard]] int describe(v4l2_query_ext_ctrl &control, Patience &patience) const;
    /// 0 where the menu control `id` offers the item on this camera.
    [[nodiscard]] int findMenuItem(std::uint32_t id, std::uint32_t index, Patience &patience) const;

    /// Reads or sets all of `controls` in one call, which is one transfer for the halves of one UVC control.
    [[nodiscard]] int get(std::span<v4l2_ext_control> controls, Patience &patience) const;
    [[nodiscard]] int set(std::span<v4l2_ext_control> controls, Patience &patience) const;

 private:
    [[nodiscard]] int call(unsigned long request, void *argument) const;
    [[nodiscard]] int callUntilReady(unsigned long request, void *argument, Patience &patience) const;

    FileDescriptor file_;
};

/// What came of looking for the node that takes pictures.
struct NodeSearch {
    std::optional<VideoNode> node;      ///< open, with Outcome::done
    Outcome outcome = Outcome::failed;  ///< of the first node that gave trouble where none was found
    std::string path;                   ///< of the node that `outcome` is about; empty: of none
};

/// Opens a device's file for reading and writing, and closes it again: whether this user may.
[[nodiscard]] Outcome tryToOpen(const std::string &path);

/// Opens the first of `paths` that takes pictures.
[[nodiscard]] NodeSearch openCaptureNode(const std::vector<std::string> &paths);

}  // namespace usb::v4l2
