#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "simulator/usbip/protocol.h"
#include "simulator/usbip/virtual_camera.h"

namespace simulator::usbip {

/// One host's use of one camera, from import to disconnection: takes the host's commands and writes the
/// replies, each when the camera's answer is due. Attaches the camera and, when destroyed, detaches it.
class Attachment {
 public:
    explicit Attachment(std::shared_ptr<VirtualCamera> camera);
    ~Attachment();
    Attachment(const Attachment &) = delete;
    Attachment &operator=(const Attachment &) = delete;

    [[nodiscard]] VirtualCamera &camera() const { return *camera_; }

    /// Takes one command, with the data that follows it, off the front of `input`. Answers its length in
    /// bytes; 0 if it is not complete yet; nothing if it is not USB/IP, and the connection must end.
    [[nodiscard]] std::optional<std::size_t> consume(std::span<const std::uint8_t> input, TimePoint now);

    /// Appends to `output` what the camera has answered by now.
    void collect(Bytes &output, TimePoint now);

    /// When collect() will have more; nothing: not before another command has come.
    [[nodiscard]] std::optional<TimePoint> nextReply() const;

 private:
    struct Control {
        Submit submit;
        Bytes data;
        TimePoint due;
    };

    [[nodiscard]] bool submit(const Submit &submit, std::span<const std::uint8_t> data, TimePoint now);
    void unlink(const Unlink &unlink);
    [[nodiscard]] bool forget(std::uint32_t sequence);
    void perform(const Control &control, TimePoint now);
    [[nodiscard]] std::size_t pending() const { return controls_.size() + status_.size() + video_.size(); }

    std::shared_ptr<VirtualCamera> camera_;
    std::deque<Control> controls_;  ///< in order: a pipe does one transfer after the other
    std::vector<Submit> status_;    ///< the camera never reports anything by itself: these wait for ever
    std::deque<Submit> video_;
    Bytes replies_;  ///< those that were ready at once
};

}  // namespace simulator::usbip
