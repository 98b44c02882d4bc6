// A value string, with every buffer of limits present or absent: only the record is written, a whole number
// stays in its range, and what was read can be written and read again.
#include <array>
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_type.h"

namespace {

using Record = std::optional<std::vector<std::uint8_t>>;

const void *pointerTo(const Record &record) {
    return record ? record->data() : nullptr;
}

/// True also where there is no range: of a boolean, and of limits the wrong way round.
bool isInRange(std::uint32_t code, std::size_t offset, const std::vector<std::uint8_t> &minimum,
               const std::uint8_t *record, const std::vector<std::uint8_t> &maximum) {
    const auto isBetween = [&](auto load) {
        const auto low = load(code, minimum.data() + offset);
        const auto high = load(code, maximum.data() + offset);
        const auto value = load(code, record + offset);
        return low > high || (low <= value && value <= high);
    };
    if (code == uvc::kBooleanComponent) return true;
    return uvc::isSignedComponent(code) ? isBetween(uvc::loadSigned) : isBetween(uvc::loadUnsigned);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    constexpr std::uint8_t kUntouched = 0xA5;
    constexpr std::size_t kMargin = 16;

    fuzz::Input input(data, size);
    const auto type = uvc::controlType(input.byte() % UVCControllerControls.size());
    std::array<Record, 4> limits;  // minimum, maximum, step, default
    for (Record &record : limits)
        if (input.flag()) record = input.bytes(type->byteSize());
    const auto before = limits;
    const std::string text = input.restText();

    std::vector<std::uint8_t> buffer(kMargin + type->byteSize() + kMargin, kUntouched);
    std::uint8_t *const record = buffer.data() + kMargin;
    const bool done = type->scanCString(text.c_str(), record, 0, pointerTo(limits[0]), pointerTo(limits[1]),
                                        pointerTo(limits[2]), pointerTo(limits[3]));
    fuzz::promise(limits == before, "limits are read only");
    const auto isUntouched = [](std::uint8_t byte) { return byte == kUntouched; };
    fuzz::promise(std::all_of(buffer.begin(), buffer.begin() + kMargin, isUntouched) &&
                      std::all_of(buffer.end() - kMargin, buffer.end(), isUntouched),
                  "only the record is written");
    if (!done) return 0;

    // The default may lie outside, and so may a multiple of the step and the end of a fraction's range.
    const bool isWhole = text.find_first_of(".eE") == std::string::npos && !limits[2];
    for (std::size_t i = 0; isWhole && limits[0] && limits[1] && i < type->fieldCount(); ++i) {
        fuzz::promise(isInRange(type->fieldTypeAtIndex(i), type->offsetToFieldAtIndex(i), *limits[0], record,
                                *limits[1]),
                      "a whole number stays in its range");
    }

    const auto written = type->stringFromBuffer(record);
    fuzz::promise(written.has_value(), "a record of the catalogue has a text");
    std::vector<std::uint8_t> again(type->byteSize(), 0);
    fuzz::promise(type->scanCString(written->c_str(), again.data(), 0), "its text can be read");
    fuzz::promise(std::equal(again.begin(), again.end(), record), "and gives the same record");
    return 0;
}
