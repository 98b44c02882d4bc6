#pragma once

#include <cstdint>
#include <vector>

class UVCValue;

namespace selfcheck {

/// Numbers of a control's fields (its value, its minimum and so on), in the camera's own units and the
/// fields' order.
using FieldValues = std::vector<std::int64_t>;

/// The fields of a pan-tilt-abs or zoom-abs value in host order.
[[nodiscard]] FieldValues numbersOf(const UVCValue &value);

/// Whether `values` lies within the range, field by field.
[[nodiscard]] bool isWithin(const FieldValues &values, const FieldValues &minimum,
                            const FieldValues &maximum);

}  // namespace selfcheck
