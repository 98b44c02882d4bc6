#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "simulator/usbip/protocol.h"

namespace simulator::usbip {

/// Bytes of one payload, its header included. A host asks for one payload per transfer, and 16 KiB is the
/// longest transfer that uvcvideo makes.
inline constexpr std::uint32_t kMostPayloadBytes = 16384;

/// VS_PROBE_CONTROL and VS_COMMIT_CONTROL (USB Video Class 1.1, sections 4.3.1.1 and A.9.7): what host and
/// camera agree on before a stream. With one format, one size and one rate there is nothing to choose: the
/// camera answers the same whatever it is offered.
inline constexpr std::uint8_t kProbeSelector = 0x01;
inline constexpr std::uint8_t kCommitSelector = 0x02;

/// The answer to a GET of either control; nothing: a stall.
[[nodiscard]] std::optional<Bytes> answerNegotiation(std::uint8_t selector, std::uint8_t request);

/// Whether the camera takes `data` as a SET_CUR: any offer (probe), but only its own format as the last word
/// (commit).
[[nodiscard]] bool takesNegotiation(std::uint8_t selector, std::span<const std::uint8_t> data);

}  // namespace simulator::usbip
