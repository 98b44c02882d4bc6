#include "simulator/usbip/video_stream.h"

#include <algorithm>
#include <utility>

#include "simulator/camera_descriptors.h"
#include "simulator/usbip/stream_negotiation.h"

namespace simulator::usbip {

namespace {

// Payload header (USB Video Class 1.1, section 2.4.3.3), without the optional time stamps.
constexpr std::uint8_t kHeaderBytes = 2;
constexpr std::uint8_t kFrameId = 0x01;
constexpr std::uint8_t kEndOfFrame = 0x02;
constexpr std::uint8_t kEndOfHeader = 0x80;

constexpr std::chrono::milliseconds kFrameTime{1000 / kFramesPerSecond};

}  // namespace

void VideoStream::start(TimePoint now) {
    running_ = true;
    frames_ = 0;
    due_ = now;
    frame_.clear();
    payload_.clear();
    frameSent_ = payloadSent_ = 0;
    endIsDue_ = false;
}

std::optional<Bytes> VideoStream::take(std::size_t length, TimePoint now) {
    if (!running_) return std::nullopt;
    if (length == 0) return Bytes{};
    if (std::exchange(endIsDue_, false)) return Bytes{};

    if (payloadSent_ == payload_.size()) {
        if (frameSent_ == frame_.size()) {
            if (now < due_) return std::nullopt;
            beginFrame(now);
        }
        beginPayload();
    }

    const std::size_t size = std::min(length, payload_.size() - payloadSent_);
    const auto from = payload_.begin() + static_cast<std::ptrdiff_t>(payloadSent_);
    Bytes part(from, from + static_cast<std::ptrdiff_t>(size));
    payloadSent_ += size;

    const bool payloadIsOut = payloadSent_ == payload_.size();
    endIsDue_ = payloadIsOut && size == length && payload_.size() < kMostPayloadBytes;
    if (payloadIsOut && frameSent_ == frame_.size()) ++frames_;
    return part;
}

std::optional<TimePoint> VideoStream::readyAt() const {
    if (!running_) return std::nullopt;
    const bool betweenFrames = !endIsDue_ && payloadSent_ == payload_.size() && frameSent_ == frame_.size();
    return betweenFrames ? due_ : TimePoint::min();
}

void VideoStream::beginFrame(TimePoint now) {
    frame_ = source_();
    frameSent_ = 0;
    parity_ = !parity_;
    // A host that did not ask for a while misses frames; it does not get them all at once later.
    due_ = std::max(due_, now - kFrameTime) + kFrameTime;
}

void VideoStream::beginPayload() {
    const std::size_t size =
        std::min<std::size_t>(kMostPayloadBytes - kHeaderBytes, frame_.size() - frameSent_);
    const bool isLast = frameSent_ + size == frame_.size();
    payload_ = {kHeaderBytes, static_cast<std::uint8_t>(kEndOfHeader | (parity_ ? kFrameId : 0) |
                                                        (isLast ? kEndOfFrame : 0))};
    const auto from = frame_.begin() + static_cast<std::ptrdiff_t>(frameSent_);
    payload_.insert(payload_.end(), from, from + static_cast<std::ptrdiff_t>(size));
    payloadSent_ = 0;
    frameSent_ += size;
}

}  // namespace simulator::usbip
