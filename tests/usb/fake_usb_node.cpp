#include "usb/fake_usb_node.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace fake {

namespace {

constexpr std::size_t kSetupBytes = 8;

// Fields are read and written one by one: usbdevfs_urb ends in an array of no size, which C++ does not know.
void finish(UMockdevIoctlData *urb, int status, int actualLength) {
    write(urb, offsetof(usbdevfs_urb, status), status);
    write(urb, offsetof(usbdevfs_urb, actual_length), actualLength);
}

usb::SetupPacket setupFrom(std::span<const std::uint8_t> bytes) {
    const auto word = [&](std::size_t at) {
        return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8);
    };
    return {bytes[0], bytes[1], word(2), word(4), word(6)};
}

}  // namespace

UsbNode::UsbNode(std::shared_ptr<simulator::CameraModel> camera)
    : handler_(umockdev_ioctl_base_new()), camera_(std::move(camera)) {
    g_signal_connect(handler_.get(), "handle-ioctl", G_CALLBACK(&UsbNode::handleIoctl), this);
}

UsbNode::~UsbNode() {
    g_signal_handlers_disconnect_by_data(handler_.get(), this);
}

void UsbNode::pullOut() {
    const std::lock_guard lock(mutex_);
    gone_ = true;
    claimed_ = 0;
}

int UsbNode::claimedInterfaces() const {
    const std::lock_guard lock(mutex_);
    return std::popcount(claimed_);
}

gboolean UsbNode::handleIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer self) {
    const int error = static_cast<UsbNode *>(self)->answer(client);
    umockdev_ioctl_client_complete(client, error == 0 ? 0 : -1, error);
    return TRUE;
}

int UsbNode::answer(UMockdevIoctlClient *client) {
    const std::lock_guard lock(mutex_);
    UMockdevIoctlData *argument = umockdev_ioctl_client_get_arg(client);
    const bool gone = gone_ || (camera_ && camera_->isUnplugged());

    switch (umockdev_ioctl_client_get_request(client)) {
        case USBDEVFS_REAPURB:
        case USBDEVFS_REAPURBNDELAY:
            return pending_.empty() && gone ? ENODEV : reap(argument);
        case USBDEVFS_GET_CAPABILITIES:
            return gone ? ENODEV : tellCapabilities(argument);
        case USBDEVFS_CLAIMINTERFACE:
            return gone ? ENODEV : claim(argument);
        case USBDEVFS_RELEASEINTERFACE:
            return gone ? ENODEV : release(argument);
        case USBDEVFS_SUBMITURB:
            return gone ? ENODEV : submit(argument);
        case USBDEVFS_DISCARDURB:
            return gone ? ENODEV : discard(argument);
        case USBDEVFS_IOCTL:  // carries the order to detach a driver
        case USBDEVFS_DISCONNECT_CLAIM:
            return EPERM;
        default:
            return ENOTTY;
    }
}

int UsbNode::tellCapabilities(UMockdevIoctlData *argument) {
    const auto capabilities = resolve(argument, 0, sizeof(std::uint32_t));
    if (!capabilities) return EFAULT;
    write<std::uint32_t>(capabilities.get(), 0,
                         USBDEVFS_CAP_ZERO_PACKET | USBDEVFS_CAP_BULK_CONTINUATION |
                             USBDEVFS_CAP_NO_PACKET_SIZE_LIM | USBDEVFS_CAP_REAP_AFTER_DISCONNECT);
    return 0;
}

int UsbNode::claim(UMockdevIoctlData *argument) {
    const auto number = resolve(argument, 0, sizeof(unsigned));
    if (!number) return EFAULT;
    if (heldElsewhere_) return EBUSY;
    claimed_ |= 1u << (read<unsigned>(number.get()) & 31u);
    return 0;
}

int UsbNode::release(UMockdevIoctlData *argument) {
    const auto number = resolve(argument, 0, sizeof(unsigned));
    if (!number) return EFAULT;
    const std::uint32_t bit = 1u << (read<unsigned>(number.get()) & 31u);
    if ((claimed_ & bit) == 0) return EINVAL;
    claimed_ &= ~bit;
    return 0;
}

int UsbNode::submit(UMockdevIoctlData *argument) {
    Pending pending;
    pending.urb = resolve(argument, 0, sizeof(usbdevfs_urb));
    if (!pending.urb) return EFAULT;
    const auto type = read<unsigned char>(pending.urb.get(), offsetof(usbdevfs_urb, type));
    const auto length = read<int>(pending.urb.get(), offsetof(usbdevfs_urb, buffer_length));
    if (type != USBDEVFS_URB_TYPE_CONTROL || length < static_cast<int>(kSetupBytes)) return EINVAL;

    pending.buffer =
        resolve(pending.urb.get(), offsetof(usbdevfs_urb, buffer), static_cast<std::size_t>(length));
    if (!pending.buffer) return EFAULT;

    // A class request to an interface needs the claim of that interface.
    const std::uint8_t interface = pending.buffer->data[4];
    if ((claimed_ >> (interface & 31u) & 1u) == 0) return EBUSY;

    const bool answersInTime =
        !camera_ || camera_->answerDelay(setupFrom({pending.buffer->data, kSetupBytes})) <=
                        std::chrono::milliseconds(usb::kRequestTimeout);
    if (answersInTime) transfer(pending);
    pending_.push_back(std::move(pending));
    return 0;
}

void UsbNode::transfer(Pending &pending) {
    const std::span<std::uint8_t> bytes(pending.buffer->data,
                                        static_cast<std::size_t>(pending.buffer->data_len));
    const usb::SetupPacket setup = setupFrom(bytes);
    std::vector<std::uint8_t> data(bytes.begin() + kSetupBytes, bytes.end());
    const bool accepted = camera_ && camera_->controlRequest(setup, data).has_value();
    const bool isGet = (setup.requestType & 0x80) != 0;
    if (accepted && isGet) std::ranges::copy(data, bytes.begin() + kSetupBytes);

    finish(pending.urb.get(), accepted ? 0 : -EPIPE, accepted ? static_cast<int>(data.size()) : 0);
    pending.finished = true;
}

int UsbNode::discard(UMockdevIoctlData *argument) {
    const auto address = read<unsigned long>(argument);
    const auto found = std::ranges::find_if(
        pending_, [&](const Pending &pending) { return pending.urb->client_addr == address; });
    if (found == pending_.end() || found->finished) return EINVAL;

    finish(found->urb.get(), -ENOENT, 0);
    found->finished = true;
    return 0;
}

int UsbNode::reap(UMockdevIoctlData *argument) {
    const auto found = std::ranges::find_if(pending_, &Pending::finished);
    if (found == pending_.end()) return EAGAIN;

    const auto pointer = resolve(argument, 0, sizeof(void *));
    if (!pointer || !umockdev_ioctl_data_set_ptr(pointer.get(), 0, found->urb.get())) return EFAULT;
    pending_.erase(found);
    return 0;
}

}  // namespace fake
