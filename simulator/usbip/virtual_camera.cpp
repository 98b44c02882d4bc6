#include "simulator/usbip/virtual_camera.h"

#include <utility>

#include "simulator/camera_descriptors.h"
#include "simulator/requests.h"
#include "simulator/usbip/stream_negotiation.h"

namespace simulator::usbip {

namespace {

/// Requests that reset an endpoint. A host ends a bulk stream with one of them, since there is no alternate
/// setting without the endpoint to choose (uvcvideo clears the endpoint's halt).
bool resetsVideoEndpoint(const usb::SetupPacket &setup, std::uint8_t streamingInterface) {
    if (kindOf(setup) != kStandardRequest) return false;
    if (recipientOf(setup) == kToEndpoint)
        return setup.request == kClearFeature && setup.index == kVideoEndpoint;
    return setup.request == kSetConfiguration ||
           (setup.request == kSetInterface && setup.index == streamingInterface);
}

bool isCommit(const usb::SetupPacket &setup, std::uint8_t interface) {
    return isInterfaceClassRequest(setup) && interfaceOf(setup) == interface &&
           setup.request == request::kSetCur && selectorOf(setup) == kCommitSelector;
}

}  // namespace

VirtualCamera::VirtualCamera(std::string busId, std::uint32_t deviceNumber,
                             std::shared_ptr<CameraModel> model, Painter painter, TransferLog &log)
    : busId_(std::move(busId)),
      deviceNumber_(deviceNumber),
      model_(std::move(model)),
      log_(&log),
      standard_(*model_),
      video_([camera = model_, paint = std::move(painter)] { return paint(*camera); }) {}

Export VirtualCamera::exported() const {
    return {busId_, 1, deviceNumber_, model_->deviceDescriptor(), model_->configurationDescriptor()};
}

void VirtualCamera::attach() {
    attached_ = true;
    model_->plugIn();
    standard_.reset();
    lastError_ = RequestError::none;
    log_->event(busId_, "attach");
}

void VirtualCamera::detach() {
    stopStream();
    attached_ = false;
    log_->event(busId_, "detach");
}

std::chrono::milliseconds VirtualCamera::answerDelay(const usb::SetupPacket &setup) {
    return isForVideoControl(setup) ? model_->answerDelay(setup) : std::chrono::milliseconds(0);
}

std::optional<Bytes> VirtualCamera::control(const usb::SetupPacket &setup, std::span<const std::uint8_t> data,
                                            TimePoint now) {
    std::optional<Bytes> answered = answer(setup, data);
    if (isGone()) return std::nullopt;
    if (answered && answered->size() > setup.length) answered->resize(setup.length);

    const std::span<const std::uint8_t> shown = isAnswered(setup) && answered ? *answered : data;
    log_->transfer(busId_, setup, shown, answered ? TransferEnd::ok : TransferEnd::stall);
    if (answered) followStream(setup, now);
    return answered;
}

void VirtualCamera::noteCancelled(const usb::SetupPacket &setup) {
    log_->transfer(busId_, setup, {}, TransferEnd::cancelled);
}

bool VirtualCamera::isForVideoControl(const usb::SetupPacket &setup) const {
    return isInterfaceClassRequest(setup) && interfaceOf(setup) == model_->videoControlInterface();
}

std::optional<Bytes> VirtualCamera::answer(const usb::SetupPacket &setup,
                                           std::span<const std::uint8_t> data) {
    if (kindOf(setup) == kStandardRequest) return standard_.answer(setup);
    if (!isInterfaceClassRequest(setup)) return std::nullopt;
    if (isForVideoControl(setup)) return answerVideoControl(setup, data);
    return answerVideoStreaming(setup, data);
}

std::optional<Bytes> VirtualCamera::answerVideoControl(const usb::SetupPacket &setup,
                                                       std::span<const std::uint8_t> data) {
    if (unitOf(setup) == 0 && selectorOf(setup) == kRequestErrorSelector && isAnswered(setup)) {
        if (setup.request == request::kGetInfo) return Bytes{0x01};  // to be read only
        if (setup.request == request::kGetCur) return Bytes{static_cast<std::uint8_t>(lastError_)};
    }

    Bytes buffer(data.begin(), data.end());
    if (isAnswered(setup)) buffer.assign(setup.length, 0);
    const std::optional<std::size_t> transferred = model_->controlRequest(setup, buffer);
    lastError_ = transferred ? RequestError::none : requestErrorOf(model_->options(), setup, data);
    if (!transferred) return std::nullopt;

    buffer.resize(isAnswered(setup) ? *transferred : 0);
    return buffer;
}

std::optional<Bytes> VirtualCamera::answerVideoStreaming(const usb::SetupPacket &setup,
                                                         std::span<const std::uint8_t> data) const {
    if (interfaceOf(setup) != videoStreamingInterface(model_->options()) || unitOf(setup) != 0)
        return std::nullopt;
    if (isAnswered(setup)) return answerNegotiation(selectorOf(setup), setup.request);

    const bool taken = setup.request == request::kSetCur && takesNegotiation(selectorOf(setup), data);
    return taken ? std::optional(Bytes{}) : std::nullopt;
}

void VirtualCamera::followStream(const usb::SetupPacket &setup, TimePoint now) {
    const std::uint8_t streaming = videoStreamingInterface(model_->options());
    if (resetsVideoEndpoint(setup, streaming)) stopStream();
    if (!isCommit(setup, streaming) || isAnswered(setup)) return;
    stopStream();
    video_.start(now);
    log_->event(busId_, "stream-start");
}

void VirtualCamera::stopStream() {
    if (!video_.isRunning()) return;
    video_.stop();
    log_->event(busId_, "stream-stop frames=" + std::to_string(video_.frames()));
}

}  // namespace simulator::usbip
