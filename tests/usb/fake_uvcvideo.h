#pragma once

#include <linux/videodev2.h>
#include <umockdev.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "simulator/camera_model.h"
#include "usb/fake_ioctl.h"

namespace fake {

/// The kernel's camera driver in front of one camera, as far as controls go: it keeps the ranges once read,
/// rounds and clamps settings, reads a control before it changes half of it, and sends one SET_CUR for each
/// control that a call has changed. Its nodes are one that takes pictures and one for metadata. It answers
/// from umockdev's worker thread, so the camera must be left alone while a call is under way.
class Uvcvideo {
 public:
    explicit Uvcvideo(std::shared_ptr<simulator::CameraModel> camera);
    ~Uvcvideo();
    Uvcvideo(const Uvcvideo &) = delete;
    Uvcvideo &operator=(const Uvcvideo &) = delete;

    [[nodiscard]] UMockdevIoctlBase *captureHandler() const { return capture_.handler.get(); }
    [[nodiscard]] UMockdevIoctlBase *metadataHandler() const { return metadata_.handler.get(); }

    /// From now on every call answers ENODEV: the camera or the driver has gone.
    void pullOut() { gone_ = true; }
    /// Gives the camera an exposure mode, which the simulated one lacks: a bit for each of V4L2's modes.
    void offerExposureModes(unsigned modes, std::int32_t standard) {
        exposureModes_ = modes;
        exposureMode_ = standard;
    }

    [[nodiscard]] std::int32_t exposureMode() const { return exposureMode_; }

 private:
    struct Node {
        GObjectPtr<UMockdevIoctlBase> handler;
        Uvcvideo *driver = nullptr;
        std::uint32_t capabilities = 0;
    };
    /// Unit and selector.
    using ControlKey = std::pair<std::uint8_t, std::uint8_t>;
    using Bytes = std::vector<std::uint8_t>;
    struct Limits {
        Bytes minimum, maximum, resolution, standard;
    };
    /// A control within one call, its bytes as the camera has them or shall have them.
    struct Loaded {
        Bytes bytes;
        bool dirty = false;
    };
    using Call = std::map<ControlKey, Loaded>;

    static gboolean handleIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer node);

    /// Each gives what the ioctl leaves in errno; 0: success.
    int answer(UMockdevIoctlClient *client, const Node &node);
    int tellCapabilities(UMockdevIoctlData *argument, const Node &node);
    int describe(UMockdevIoctlData *argument);
    int describeExposure(UMockdevIoctlData *description) const;
    int tellMenuItem(UMockdevIoctlData *argument) const;
    int carryControls(UMockdevIoctlData *argument, bool set);
    int getControl(v4l2_ext_control &control, Call &call);
    int setControl(v4l2_ext_control &control, Call &call);
    int sendDirty(const Call &call);
    int load(const ControlKey &key, Call &call);
    int readLimits(const ControlKey &key);
    /// One class request to the camera.
    int transfer(std::uint8_t request, const ControlKey &key, Bytes &bytes);

    mutable std::mutex mutex_;
    std::shared_ptr<simulator::CameraModel> camera_;
    Node capture_;
    Node metadata_;
    std::map<ControlKey, Limits> limits_;
    std::atomic<unsigned> exposureModes_ = 0;
    std::atomic<std::int32_t> exposureMode_ = 0;
    std::atomic<bool> gone_ = false;
};

}  // namespace fake
