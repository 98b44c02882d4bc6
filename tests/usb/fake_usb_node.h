#pragma once

#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <umockdev.h>

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>

#include "simulator/camera_model.h"
#include "usb/fake_ioctl.h"

namespace fake {

/// The kernel's side of one USB device node, as far as libusb uses it for control transfers: claims, and
/// requests that are submitted, reaped and discarded. The camera behind it answers from umockdev's worker
/// thread, so it must be left alone by the test while a request is under way.
class UsbNode {
 public:
    explicit UsbNode(std::shared_ptr<simulator::CameraModel> camera);
    ~UsbNode();
    UsbNode(const UsbNode &) = delete;
    UsbNode &operator=(const UsbNode &) = delete;

    [[nodiscard]] UMockdevIoctlBase *handler() const { return handler_.get(); }

    /// From now on every call answers ENODEV.
    void pullOut();
    /// From now on another driver holds the interfaces, or does so no longer.
    void holdElsewhere(bool held = true) { heldElsewhere_ = held; }

    [[nodiscard]] int claimedInterfaces() const;

 private:
    /// A request between submission and reaping.
    struct Pending {
        GObjectPtr<UMockdevIoctlData> urb;
        GObjectPtr<UMockdevIoctlData> buffer;
        bool finished = false;
    };

    static gboolean handleIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer self);

    /// Each gives what the ioctl leaves in errno; 0: success.
    int answer(UMockdevIoctlClient *client);
    int tellCapabilities(UMockdevIoctlData *argument);
    int claim(UMockdevIoctlData *argument);
    int release(UMockdevIoctlData *argument);
    int submit(UMockdevIoctlData *argument);
    int discard(UMockdevIoctlData *argument);
    int reap(UMockdevIoctlData *argument);
    /// Lets the camera answer the transfer in `pending`, and fills in its status and length.
    void transfer(Pending &pending);

    GObjectPtr<UMockdevIoctlBase> handler_;
    mutable std::mutex mutex_;
    std::shared_ptr<simulator::CameraModel> camera_;
    std::list<Pending> pending_;
    std::uint32_t claimed_ = 0;  // a bit for each interface
    bool gone_ = false;
    std::atomic<bool> heldElsewhere_ = false;
};

}  // namespace fake
