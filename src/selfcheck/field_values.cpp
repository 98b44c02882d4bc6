#include "selfcheck/field_values.h"

#include <cstring>

#include "uvc/uvc_value.h"

namespace selfcheck {
namespace {

template <typename Number>
std::int64_t numberAt(const UVCValue &value, std::size_t field) {
    Number number{};
    std::memcpy(&number, static_cast<const std::uint8_t *>(value.valuePtr()) + field * sizeof number,
                sizeof number);
    return number;
}

}  // namespace

FieldValues numbersOf(const UVCValue &value) {
    // pan-tilt-abs has two fields of 32 signed bits, zoom-abs one of 16 bits, unsigned.
    if (value.valueType()->fieldCount() == 2)
        return {numberAt<std::int32_t>(value, 0), numberAt<std::int32_t>(value, 1)};
    return {numberAt<std::uint16_t>(value, 0)};
}

bool isWithin(const FieldValues &values, const FieldValues &minimum, const FieldValues &maximum) {
    for (std::size_t field = 0; field < values.size(); ++field)
        if (values[field] < minimum[field] || values[field] > maximum[field]) return false;
    return true;
}

}  // namespace selfcheck
