#include "simulator/usbip/stream_negotiation.h"

#include "simulator/camera_descriptors.h"
#include "simulator/requests.h"

namespace simulator::usbip {

namespace {

Bytes settings() {
    ByteWriter out(std::endian::little);
    out.u2(0)  // bmHint: nothing is fixed by the host
        .u1(kFormatIndex)
        .u1(kFrameIndex)
        .u4(kFrameInterval)
        .zeros(10)  // key frames, quality, window and delay: uncompressed video has none
        .u4(kFrameBytes)
        .u4(kMostPayloadBytes)
        .u4(kClockHz)
        .u1(0x03)   // bmFramingInfo: payload headers carry the frame id and the end of frame
        .zeros(3);  // versions of the payload format: of no meaning to uncompressed video
    return out.finished();
}

}  // namespace

std::optional<Bytes> answerNegotiation(std::uint8_t selector, std::uint8_t request) {
    if (selector != kProbeSelector && selector != kCommitSelector) return std::nullopt;
    const Bytes now = settings();
    switch (request) {
        case request::kGetCur:
            return now;
        case request::kGetMin:
        case request::kGetMax:
        case request::kGetDef:
            return selector == kProbeSelector ? std::optional(now) : std::nullopt;
        case request::kGetLen:
            return Bytes{static_cast<std::uint8_t>(now.size()), 0};
        case request::kGetInfo:
            return Bytes{0x03};  // to be read and to be set
        default:
            return std::nullopt;
    }
}

bool takesNegotiation(std::uint8_t selector, std::span<const std::uint8_t> data) {
    if (data.size() != settings().size()) return false;
    if (selector == kProbeSelector) return true;
    return selector == kCommitSelector && data[2] == kFormatIndex && data[3] == kFrameIndex;
}

}  // namespace simulator::usbip
