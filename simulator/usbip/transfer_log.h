#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string_view>

#include "usb/usb.h"

namespace simulator::usbip {

enum class TransferEnd { ok, stall, cancelled };

/// Writes what happens to the cameras, one line per event, as soon as it has happened. The format is
/// described in docs/camara-virtual.md; scripts read it.
class TransferLog {
 public:
    /// `out` must outlive the log.
    explicit TransferLog(std::ostream &out) : out_(&out) {}

    /// `data`: what was sent to the device, or what it answered.
    void transfer(std::string_view busId, const usb::SetupPacket &setup, std::span<const std::uint8_t> data,
                  TransferEnd end);

    /// "1-1 attach", or the bare event where `busId` is empty.
    void event(std::string_view busId, std::string_view text);

    /// Whether every line so far could be written.
    [[nodiscard]] bool isWhole() const { return out_->good(); }

 private:
    std::ostream *out_;
};

}  // namespace simulator::usbip
