#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "simulator/camera_model.h"
#include "simulator/usbip/protocol.h"
#include "simulator/usbip/request_error.h"
#include "simulator/usbip/standard_requests.h"
#include "simulator/usbip/transfer_log.h"
#include "simulator/usbip/video_stream.h"

namespace simulator::usbip {

/// Draws what `camera` sees now: kFrameBytes bytes of YUY2.
using Painter = std::function<Bytes(const CameraModel &camera)>;

/// A camera with all that a USB device has besides its controls: the standard requests, the negotiation of
/// the stream, the video, and a name on the virtual bus. Everything that happens to it is logged.
class VirtualCamera {
 public:
    /// `log` must outlive the camera.
    VirtualCamera(std::string busId, std::uint32_t deviceNumber, std::shared_ptr<CameraModel> model,
                  Painter painter, TransferLog &log);
    VirtualCamera(const VirtualCamera &) = delete;
    VirtualCamera &operator=(const VirtualCamera &) = delete;

    [[nodiscard]] const std::string &busId() const { return busId_; }
    [[nodiscard]] Export exported() const;

    /// One host at a time.
    [[nodiscard]] bool isAttached() const { return attached_; }
    void attach();
    void detach();
    /// Whether the cable has come out by itself: the host is to be disconnected.
    [[nodiscard]] bool isGone() const { return model_->isUnplugged(); }
    /// Logs that it is about to be unplugged.
    void announceUnplugging() { log_->event(busId_, "unplug"); }

    /// How long the camera takes over a control transfer before it acts on it and answers.
    [[nodiscard]] std::chrono::milliseconds answerDelay(const usb::SetupPacket &setup);

    /// Performs one control transfer at once. `data` is what came with it; the answer is already cut to
    /// wLength, and empty where nothing is answered. Nothing: a stall, or the cable has come out.
    [[nodiscard]] std::optional<Bytes> control(const usb::SetupPacket &setup,
                                               std::span<const std::uint8_t> data, TimePoint now);

    /// The host gave up on a control transfer before answerDelay() was over: nothing happened.
    void noteCancelled(const usb::SetupPacket &setup);

    [[nodiscard]] VideoStream &video() { return video_; }
    [[nodiscard]] const VideoStream &video() const { return video_; }

 private:
    [[nodiscard]] bool isForVideoControl(const usb::SetupPacket &setup) const;
    [[nodiscard]] std::optional<Bytes> answer(const usb::SetupPacket &setup,
                                              std::span<const std::uint8_t> data);
    [[nodiscard]] std::optional<Bytes> answerVideoControl(const usb::SetupPacket &setup,
                                                          std::span<const std::uint8_t> data);
    [[nodiscard]] std::optional<Bytes> answerVideoStreaming(const usb::SetupPacket &setup,
                                                            std::span<const std::uint8_t> data) const;
    void followStream(const usb::SetupPacket &setup, TimePoint now);
    void stopStream();

    std::string busId_;
    std::uint32_t deviceNumber_;
    std::shared_ptr<CameraModel> model_;
    TransferLog *log_;
    StandardRequests standard_;
    VideoStream video_;
    RequestError lastError_ = RequestError::none;
    bool attached_ = false;
};

}  // namespace simulator::usbip
