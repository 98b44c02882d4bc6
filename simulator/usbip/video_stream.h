#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>

#include "simulator/usbip/protocol.h"

namespace simulator::usbip {

using TimePoint = std::chrono::steady_clock::time_point;

/// Draws what the camera sees now: kFrameBytes bytes of YUY2.
using FrameSource = std::function<Bytes()>;

/// The video of one camera, cut into payloads for a bulk endpoint (USB Video Class 1.1, section 2.4.3). A
/// frame is several payloads; each begins with a header that tells which frame it belongs to, and the last
/// one says that it is the last. A payload ends with a transfer that is not full, or at its greatest length.
class VideoStream {
 public:
    explicit VideoStream(FrameSource source) : source_(std::move(source)) {}

    void start(TimePoint now);
    void stop() { running_ = false; }
    [[nodiscard]] bool isRunning() const { return running_; }

    /// Frames sent whole since start().
    [[nodiscard]] int frames() const { return frames_; }

    /// What a transfer of at most `length` bytes gets. Nothing: the next frame is not due yet, or nothing
    /// streams.
    [[nodiscard]] std::optional<Bytes> take(std::size_t length, TimePoint now);

    /// When take() will have something to give; a past time if it has now. Nothing: no stream.
    [[nodiscard]] std::optional<TimePoint> readyAt() const;

 private:
    void beginFrame(TimePoint now);
    void beginPayload();

    FrameSource source_;
    bool running_ = false;
    int frames_ = 0;
    TimePoint due_;
    bool parity_ = false;  ///< the frame id: changes with every frame
    Bytes frame_;
    std::size_t frameSent_ = 0;  ///< bytes of frame_ that are in a payload already
    Bytes payload_;
    std::size_t payloadSent_ = 0;
    bool endIsDue_ = false;  ///< the payload filled its last transfer: an empty one has to end it
};

}  // namespace simulator::usbip
