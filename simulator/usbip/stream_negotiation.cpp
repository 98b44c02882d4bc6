#include "simulator/usbip/stream_negotiation.h"

#include "simulator/camera_controls.h"
#include "simulator/camera_descriptors.h"

namespace simulator::usbip {

namespace {

/// Little-endian; `size` is at most 4.
void append(Bytes &bytes, std::uint32_t value, unsigned size) {
    for (unsigned i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

Bytes settings(const CameraOptions &options) {
    Bytes bytes;
    append(bytes, 0, 2);  // bmHint: nothing is fixed by the host
    append(bytes, kFormatIndex, 1);
    append(bytes, kFrameIndex, 1);
    append(bytes, kFrameInterval, 4);
    bytes.resize(bytes.size() + 10, 0);  // key frames, quality, window and delay: uncompressed video has none
    append(bytes, kFrameBytes, 4);
    append(bytes, kMostPayloadBytes, 4);
    if (options.uvcVersion < 0x0110) return bytes;

    append(bytes, kClockHz, 4);
    append(bytes, 0x03, 1);  // bmFramingInfo: payload headers carry the frame id and the end of frame
    append(bytes, 0, 3);     // versions of the payload format: of no meaning to uncompressed video
    return bytes;
}

}  // namespace

std::optional<Bytes> answerNegotiation(const CameraOptions &options, std::uint8_t selector,
                                       std::uint8_t request) {
    if (selector != kProbeSelector && selector != kCommitSelector) return std::nullopt;
    const Bytes now = settings(options);
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

bool takesNegotiation(const CameraOptions &options, std::uint8_t selector,
                      std::span<const std::uint8_t> data) {
    if (data.size() != settings(options).size()) return false;
    if (selector == kProbeSelector) return true;
    return selector == kCommitSelector && data[2] == kFormatIndex && data[3] == kFrameIndex;
}

}  // namespace simulator::usbip
