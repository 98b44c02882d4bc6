#include "simulator/usbip/connection.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace simulator::usbip {

namespace {

/// Bytes of replies that a client may leave unread before its commands are no longer read.
constexpr std::size_t kMostOutput = std::size_t{1} << 20;

bool isOnlyForNow(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

}  // namespace

bool Connection::wantsToRead() const {
    return output_.size() < kMostOutput;
}

std::optional<TimePoint> Connection::nextReply() const {
    return attachment_ && output_.size() < kMostOutput ? attachment_->nextReply() : std::nullopt;
}

bool Connection::receive(TimePoint now) {
    std::array<std::uint8_t, 16384> buffer;
    const ssize_t count = ::recv(socket_.get(), buffer.data(), buffer.size(), 0);
    if (count == 0) return false;
    if (count < 0) return isOnlyForNow(errno);
    input_.insert(input_.end(), buffer.begin(), buffer.begin() + count);
    return process(now);
}

bool Connection::send() {
    if (output_.empty()) return true;
    const ssize_t count = ::send(socket_.get(), output_.data(), output_.size(), MSG_NOSIGNAL);
    if (count < 0) return isOnlyForNow(errno);
    output_.erase(output_.begin(), output_.begin() + count);
    return true;
}

void Connection::collect(TimePoint now) {
    if (attachment_ && output_.size() < kMostOutput) attachment_->collect(output_, now);
}

bool Connection::process(TimePoint now) {
    std::size_t used = 0;
    while (true) {
        const auto rest = std::span<const std::uint8_t>(input_).subspan(used);
        const auto consumed = attachment_ ? attachment_->consume(rest, now) : consumeOperation(rest);
        if (!consumed) return false;
        if (*consumed == 0) break;
        used += *consumed;
    }
    input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(used));
    return true;
}

std::optional<std::size_t> Connection::consumeOperation(std::span<const std::uint8_t> input) {
    if (input.size() < kOperationBytes) return 0;
    const Operation operation = decodeOperation(input.first<kOperationBytes>());
    if (operation.version != kVersion) return std::nullopt;

    if (operation.code == kListRequest) {
        std::vector<Export> devices;
        for (const auto &camera : *cameras_) devices.push_back(camera->exported());
        reply(encodeList(devices));
        return kOperationBytes;
    }
    if (operation.code != kImportRequest) return std::nullopt;
    if (input.size() < kOperationBytes + kBusIdBytes) return 0;
    import(decodeBusId(input.subspan<kOperationBytes, kBusIdBytes>()));
    return kOperationBytes + kBusIdBytes;
}

void Connection::import(const std::string &busId) {
    const auto found =
        std::ranges::find(*cameras_, busId, [](const auto &camera) { return camera->busId(); });
    if (found == cameras_->end()) return reply(encodeImportRefusal(ImportStatus::noDevice));
    if ((*found)->isAttached()) return reply(encodeImportRefusal(ImportStatus::busy));

    reply(encodeImport((*found)->exported()));
    attachment_ = std::make_unique<Attachment>(*found);
}

}  // namespace simulator::usbip
