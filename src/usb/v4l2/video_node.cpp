#include "usb/v4l2/video_node.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include "usb/v4l2/v4l2_outcome.h"

namespace usb::v4l2 {

namespace {

constexpr std::chrono::milliseconds kPauseUntilReady{20};

v4l2_ext_controls listOf(std::span<v4l2_ext_control> controls) {
    v4l2_ext_controls list{};
    list.which = V4L2_CTRL_WHICH_CUR_VAL;
    list.count = static_cast<std::uint32_t>(controls.size());
    list.controls = controls.data();
    return list;
}

FileDescriptor openFile(const std::string &path) {
    return FileDescriptor(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
}

}  // namespace

FileDescriptor::~FileDescriptor() {
    if (isOpen()) ::close(number_);
}

FileDescriptor::FileDescriptor(FileDescriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}

bool Patience::waitOnceMore() {
    const auto now = std::chrono::steady_clock::now();
    if (!end_) end_ = now + std::chrono::milliseconds(kRequestTimeout);
    if (now + kPauseUntilReady >= *end_) return false;
    std::this_thread::sleep_for(kPauseUntilReady);
    return true;
}

int VideoNode::takesPictures(bool &answer) const {
    v4l2_capability capability{};
    const int error = call(VIDIOC_QUERYCAP, &capability);
    if (error != 0) return error;

    // `capabilities` tells of all nodes of the camera together.
    const bool tellsOfNode = (capability.capabilities & V4L2_CAP_DEVICE_CAPS) != 0;
    const std::uint32_t own = tellsOfNode ? capability.device_caps : capability.capabilities;
    answer = (own & V4L2_CAP_VIDEO_CAPTURE) != 0;
    return 0;
}

int VideoNode::describe(v4l2_query_ext_ctrl &control, Patience &patience) const {
    return callUntilReady(VIDIOC_QUERY_EXT_CTRL, &control, patience);
}

int VideoNode::findMenuItem(std::uint32_t id, std::uint32_t index, Patience &patience) const {
    v4l2_querymenu item{};
    item.id = id;
    item.index = index;
    return callUntilReady(VIDIOC_QUERYMENU, &item, patience);
}

int VideoNode::get(std::span<v4l2_ext_control> controls, Patience &patience) const {
    v4l2_ext_controls list = listOf(controls);
    return callUntilReady(VIDIOC_G_EXT_CTRLS, &list, patience);
}

int VideoNode::set(std::span<v4l2_ext_control> controls, Patience &patience) const {
    v4l2_ext_controls list = listOf(controls);
    return callUntilReady(VIDIOC_S_EXT_CTRLS, &list, patience);
}

int VideoNode::call(unsigned long request, void *argument) const {
    int result = 0;
    do result = ::ioctl(file_.number(), request, argument);
    while (result < 0 && errno == EINTR);
    return result < 0 ? errno : 0;
}

int VideoNode::callUntilReady(unsigned long request, void *argument, Patience &patience) const {
    int error = call(request, argument);
    while (error == EBUSY && patience.waitOnceMore()) error = call(request, argument);
    return error;
}

Outcome tryToOpen(const std::string &path) {
    return openFile(path).isOpen() ? Outcome::done : outcomeOfOpen(errno);
}

NodeSearch openCaptureNode(const std::vector<std::string> &paths) {
    NodeSearch search;
    const auto rememberTrouble = [&search](const std::string &path, int error) {
        if (!search.path.empty()) return;
        search.path = path;
        search.outcome = outcomeOfOpen(error);
    };

    for (const std::string &path : paths) {
        FileDescriptor file = openFile(path);
        if (!file.isOpen()) {
            rememberTrouble(path, errno);
            continue;
        }
        VideoNode node(std::move(file));
        bool takesPictures = false;
        const int error = node.takesPictures(takesPictures);
        if (error != 0) rememberTrouble(path, error);
        if (takesPictures) return {std::move(node), Outcome::done, path};
    }
    return search;
}

}  // namespace usb::v4l2
