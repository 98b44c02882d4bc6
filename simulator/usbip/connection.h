#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "simulator/usbip/attachment.h"
#include "simulator/usbip/file_descriptor.h"

namespace simulator::usbip {

/// One client's connection: lists the devices, and holds an attachment once one is imported. Never blocks.
/// Destroying it unplugs the camera.
class Connection {
 public:
    using Cameras = std::vector<std::shared_ptr<VirtualCamera>>;

    /// `socket` is connected and does not block; `cameras` must outlive this.
    Connection(FileDescriptor socket, const Cameras &cameras)
        : socket_(std::move(socket)), cameras_(&cameras) {}

    [[nodiscard]] int socket() const { return socket_.get(); }
    [[nodiscard]] bool wantsToRead() const;
    [[nodiscard]] bool wantsToWrite() const { return !output_.empty(); }
    [[nodiscard]] std::optional<TimePoint> nextReply() const;

    /// The three steps of serving it, in any order. False: the connection is over.
    [[nodiscard]] bool receive(TimePoint now);
    [[nodiscard]] bool send();
    void collect(TimePoint now);

    /// The camera behind it; null while none is imported.
    [[nodiscard]] VirtualCamera *camera() const { return attachment_ ? &attachment_->camera() : nullptr; }

 private:
    [[nodiscard]] bool process(TimePoint now);
    [[nodiscard]] std::optional<std::size_t> consumeOperation(std::span<const std::uint8_t> input);
    void import(const std::string &busId);
    void reply(const Bytes &bytes) { append(output_, bytes); }

    FileDescriptor socket_;
    const Cameras *cameras_;
    std::unique_ptr<Attachment> attachment_;
    Bytes input_;
    Bytes output_;
};

}  // namespace simulator::usbip
