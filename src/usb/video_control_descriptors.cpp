#include "usb/video_control_descriptors.h"

#include <algorithm>

namespace usb {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::uint8_t kClassSpecificInterface = 0x24;  // CS_INTERFACE
constexpr std::uint8_t kHeader = 0x01;                  // VC_HEADER
constexpr std::uint8_t kInputTerminal = 0x02;           // VC_INPUT_TERMINAL
constexpr std::uint8_t kProcessingUnit = 0x05;          // VC_PROCESSING_UNIT

// Where bControlSize stands: in the camera terminal's (section 3.7.2.3) and the processing unit's (3.7.2.5)
// descriptor. bmControls follows it. Other input terminals are too short to have one.
constexpr std::size_t kTerminalControlSizeOffset = 14;
constexpr std::size_t kProcessingUnitControlSizeOffset = 7;

/// Reads fields by their offset. From the first read past the end on, all yield zeros or nothing, so that one
/// look at overrun() at the end is enough.
class FieldReader {
 public:
    explicit FieldReader(Bytes bytes) : bytes_(bytes) {}

    [[nodiscard]] bool overrun() const { return overrun_; }

    std::uint8_t u8(std::size_t offset) {
        const Bytes field = bytes(offset, 1);
        return field.empty() ? std::uint8_t{0} : field[0];
    }

    std::uint16_t u16(std::size_t offset) {
        const Bytes field = bytes(offset, 2);
        return field.empty() ? std::uint16_t{0} : static_cast<std::uint16_t>(field[0] | (field[1] << 8));
    }

    Bytes bytes(std::size_t offset, std::size_t count) {
        if (overrun_ || offset > bytes_.size() || count > bytes_.size() - offset) {
            overrun_ = true;
            return {};
        }
        return bytes_.subspan(offset, count);
    }

 private:
    Bytes bytes_;
    bool overrun_ = false;
};

/// Removes the first descriptor from `rest`. Empty when there is none, or its length is wrong.
Bytes takeDescriptor(Bytes &rest) {
    if (rest.size() < 2) return {};

    const std::size_t length = rest[0];
    if (length < 2 || length > rest.size()) return {};  // 0 would loop for ever

    const Bytes descriptor = rest.first(length);
    rest = rest.subspan(length);
    return descriptor;
}

bool isClassSpecific(Bytes descriptor) {
    return descriptor[1] == kClassSpecificInterface;
}

void takeBitmap(Bytes descriptor, std::size_t controlSizeOffset, std::optional<ControlBitmap> &bitmap) {
    FieldReader reader(descriptor);
    const std::uint8_t controlSize = reader.u8(controlSizeOffset);
    const Bytes controls = reader.bytes(controlSizeOffset + 1, controlSize);
    if (reader.overrun() || controls.empty()) return;
    bitmap.emplace(controls.begin(), controls.end());
}

}  // namespace

bool hasControl(const ControlBitmap &bitmap, std::size_t bit) {
    return bit / 8 < bitmap.size() && ((unsigned{bitmap[bit / 8]} >> (bit % 8)) & 1u) != 0;
}

std::optional<VideoControlDescriptors> parseVideoControlDescriptors(Bytes rest) {
    Bytes block = rest;
    Bytes header = takeDescriptor(rest);
    while (!header.empty() && !isClassSpecific(header)) {
        block = rest;
        header = takeDescriptor(rest);
    }

    FieldReader reader(header);
    const std::uint8_t subtype = reader.u8(2);
    VideoControlDescriptors result;
    result.uvcVersion = reader.u16(3);
    const std::size_t totalLength = reader.u16(5);
    if (reader.overrun() || subtype != kHeader) return std::nullopt;

    // wTotalLength counts from the header's first byte. It may promise more than there is, or less than the
    // header.
    const std::size_t blockLength = std::clamp(totalLength, header.size(), block.size());
    rest = block.first(blockLength).subspan(header.size());

    for (Bytes descriptor = takeDescriptor(rest); !descriptor.empty(); descriptor = takeDescriptor(rest)) {
        if (!isClassSpecific(descriptor) || descriptor.size() < 3) continue;

        // Terminal type and ids are not looked at: a device of this class has one camera and one processing
        // unit.
        if (descriptor[2] == kInputTerminal)
            takeBitmap(descriptor, kTerminalControlSizeOffset, result.terminalBitmap);
        else if (descriptor[2] == kProcessingUnit)
            takeBitmap(descriptor, kProcessingUnitControlSizeOffset, result.processingUnitBitmap);
    }
    return result;
}

}  // namespace usb
