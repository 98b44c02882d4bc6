#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "uvc/diagnostics.h"

namespace uvc {

/// A control's range, step and default: whole records, or one field of each. Null where it has none.
struct ScanLimits {
    const void *minimum = nullptr;
    const void *maximum = nullptr;
    const void *stepSize = nullptr;
    const void *defaultValue = nullptr;

    /// The limits of the field at `offset` bytes.
    [[nodiscard]] ScanLimits atOffset(std::size_t offset) const;
};

/// Reads the value at the start of `text` into the one field `field` of component code `code`. The number of
/// characters taken, blanks before a number included; nothing when the text is no value for this field, which
/// then stays as it was.
[[nodiscard]] std::optional<std::size_t> scanComponent(std::uint32_t code, const char *text, void *field,
                                                       const ScanLimits &limits,
                                                       const Diagnostics &diagnostics);

}  // namespace uvc
