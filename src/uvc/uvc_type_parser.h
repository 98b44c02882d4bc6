#pragma once

#include <optional>
#include <vector>

#include "uvc/uvc_type.h"

namespace uvc {

/// Reads a type description. Nothing when it is not one; a warning on standard error tells why, except for
/// "{}" and "{".
[[nodiscard]] std::optional<std::vector<Field>> parseTypeDescription(const char *text);

}  // namespace uvc
