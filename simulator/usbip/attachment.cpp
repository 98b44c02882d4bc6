#include "simulator/usbip/attachment.h"

#include <algorithm>
#include <utility>

#include "simulator/camera_descriptors.h"
#include "simulator/requests.h"

namespace simulator::usbip {

namespace {

/// A kernel has about a dozen transfers pending. A client that sends more than this is not a kernel.
constexpr std::size_t kMostPending = 512;

constexpr std::uint32_t numberOf(std::uint8_t endpointAddress) {
    return endpointAddress & 0x0Fu;
}

template <typename Transfers>
bool eraseBySequence(Transfers &transfers, std::uint32_t sequence) {
    return std::erase_if(transfers, [&](const Submit &each) { return each.sequence == sequence; }) > 0;
}

}  // namespace

Attachment::Attachment(std::shared_ptr<VirtualCamera> camera) : camera_(std::move(camera)) {
    camera_->attach();
}

Attachment::~Attachment() {
    for (const Control &control : controls_) camera_->noteCancelled(control.submit.setup);
    camera_->detach();
}

std::optional<std::size_t> Attachment::consume(std::span<const std::uint8_t> input, TimePoint now) {
    if (input.size() < kCommandBytes) return 0;
    const std::optional<Command> command = decodeCommand(input.first<kCommandBytes>());
    if (!command) return std::nullopt;
    if (const auto *const gone = std::get_if<Unlink>(&*command)) {
        unlink(*gone);
        return kCommandBytes;
    }

    const auto &wanted = std::get<Submit>(*command);
    // wLength cannot be larger. Waiting for more would only fill our memory.
    constexpr std::uint32_t kMostControlBytes = 0xFFFF;
    if (wanted.endpoint == 0 && wanted.length > kMostControlBytes) return std::nullopt;
    const std::size_t dataBytes = wanted.toHost ? 0 : wanted.length;
    if (input.size() - kCommandBytes < dataBytes) return 0;
    if (!submit(wanted, input.subspan(kCommandBytes, dataBytes), now)) return std::nullopt;
    return kCommandBytes + dataBytes;
}

void Attachment::collect(Bytes &output, TimePoint now) {
    while (!controls_.empty() && controls_.front().due <= now && !camera_->isGone()) {
        const Control control = std::move(controls_.front());
        controls_.pop_front();
        perform(control, now);
    }
    while (!video_.empty()) {
        const std::optional<Bytes> data = camera_->video().take(video_.front().length, now);
        if (!data) break;
        append(replies_, encodeSubmitReply(video_.front().sequence, kDone,
                                           static_cast<std::uint32_t>(data->size()), *data));
        video_.pop_front();
    }
    append(output, std::exchange(replies_, {}));
}

std::optional<TimePoint> Attachment::nextReply() const {
    std::optional<TimePoint> next;
    if (!replies_.empty()) next = TimePoint::min();
    if (!controls_.empty()) next = std::min(next.value_or(TimePoint::max()), controls_.front().due);
    const std::optional<TimePoint> frame = camera_->video().readyAt();
    if (!video_.empty() && frame) next = std::min(next.value_or(TimePoint::max()), *frame);
    return next;
}

bool Attachment::submit(const Submit &submit, std::span<const std::uint8_t> data, TimePoint now) {
    if (pending() >= kMostPending) return false;

    if (submit.endpoint == 0) {
        const TimePoint start = controls_.empty() ? now : std::max(now, controls_.back().due);
        controls_.push_back({submit, {data.begin(), data.end()}, start + camera_->answerDelay(submit.setup)});
    } else if (submit.toHost && submit.endpoint == numberOf(kStatusEndpoint)) {
        status_.push_back(submit);
    } else if (submit.toHost && submit.endpoint == numberOf(kVideoEndpoint)) {
        video_.push_back(submit);
    } else {
        append(replies_, encodeSubmitReply(submit.sequence, kStalled, 0));
    }
    return true;
}

void Attachment::unlink(const Unlink &unlink) {
    // kDone: the transfer was over, and its reply comes before this one. The host goes by that order.
    const std::int32_t status = forget(unlink.target) ? kUnlinked : kDone;
    append(replies_, encodeUnlinkReply(unlink.sequence, status));
}

bool Attachment::forget(std::uint32_t sequence) {
    const auto control =
        std::ranges::find(controls_, sequence, [](const Control &each) { return each.submit.sequence; });
    if (control != controls_.end()) {
        camera_->noteCancelled(control->submit.setup);
        controls_.erase(control);
        return true;
    }
    return eraseBySequence(status_, sequence) || eraseBySequence(video_, sequence);
}

void Attachment::perform(const Control &control, TimePoint now) {
    const usb::SetupPacket &setup = control.submit.setup;
    // A command gives the direction twice. If the two differ, we would read data that was never sent.
    const bool agree = setup.length == 0 || isAnswered(setup) == control.submit.toHost;
    std::optional<Bytes> answer;
    if (agree) answer = camera_->control(setup, control.data, now);
    if (camera_->isGone()) return;
    if (!answer) {
        append(replies_, encodeSubmitReply(control.submit.sequence, kStalled, 0));
        return;
    }
    if (!control.submit.toHost) {
        append(replies_, encodeSubmitReply(control.submit.sequence, kDone,
                                           static_cast<std::uint32_t>(control.data.size())));
        return;
    }
    if (answer->size() > control.submit.length) answer->resize(control.submit.length);
    append(replies_, encodeSubmitReply(control.submit.sequence, kDone,
                                       static_cast<std::uint32_t>(answer->size()), *answer));
}

}  // namespace simulator::usbip
