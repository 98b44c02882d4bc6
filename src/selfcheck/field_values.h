#pragma once

#include <cstdint>
#include <vector>

class UVCValue;

namespace selfcheck {

/// Numbers of a control's fields (its value, its minimum and so on), in the camera's own units and the
/// fields' order.
using FieldValues = std::vector<std::int64_t>;

/// A value's fields, each read by its type; the value is in host order. Fields of 8 unsigned bytes, which no
/// control of a camera has, must fit the sign.
[[nodiscard]] FieldValues numbersOf(const UVCValue &value);

}  // namespace selfcheck
