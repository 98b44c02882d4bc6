#include "uvc/uvc_component_scan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>
#include <type_traits>

#include "uvc/ascii.h"
#include "uvc/c_locale.h"
#include "uvc/uvc_component.h"

namespace uvc {
namespace {

// Signed fields are worked on as 64-bit signed numbers, all others as unsigned ones ("Wide" below).

template <typename Wide>
struct Number {
    Wide value = 0;
    std::size_t consumed = 0;
};

template <typename Wide>
Wide load(std::uint32_t code, const void *field) {
    if constexpr (std::is_signed_v<Wide>)
        return loadSigned(code, field);
    else
        return loadUnsigned(code, field);
}

template <typename Wide>
Wide highest(std::uint32_t code) {
    const auto unusedBits = 64 - 8 * static_cast<int>(UVCTypeComponentByteSize(code));
    return static_cast<Wide>(std::numeric_limits<Wide>::max() >> unusedBits);
}

template <typename Wide>
Wide lowest(std::uint32_t code) {
    return std::is_signed_v<Wide> ? static_cast<Wide>(-highest<Wide>(code) - 1) : Wide{0};
}

/// A text is a fraction when its first run of number characters, behind any blanks, holds a decimal point or
/// an exponent letter. "0x1e" is none: the run ends at the "x".
bool looksFloatingPoint(const char *text) {
    const char *number = ascii::skipBlanks(text);
    const char behindDigits = number[std::strspn(number, "0123456789+-")];
    return behindDigits == '.' || behindDigits == 'e' || behindDigits == 'E';
}

/// The number `fraction` of the way through the range, rounded half away from zero. Single precision is
/// wanted: the same text must give the same position as ever.
template <typename Wide>
Wide interpolate(std::uint32_t code, float fraction, Wide minimum, Wide maximum) {
    const float span = static_cast<float>(maximum) - static_cast<float>(minimum);
    const float value = std::round(fraction * span + static_cast<float>(minimum));

    // A range's end may round up to one past the type (2147483647 to 2147483648.0f), where a cast is
    // undefined.
    if (value >= static_cast<float>(highest<Wide>(code))) return highest<Wide>(code);
    if (value <= static_cast<float>(lowest<Wide>(code))) return lowest<Wide>(code);
    return static_cast<Wide>(value);
}

template <typename Wide>
std::optional<Number<Wide>> scanFraction(std::uint32_t code, const char *text, const ScanLimits &limits,
                                         const Diagnostics &diagnostics) {
    if (limits.minimum == nullptr || limits.maximum == nullptr) {
        diagnostics.warning({"No value range provided by control, floating-point input not available"});
        return std::nullopt;
    }

    const ScopedCLocale cLocale;
    float scanned = 0;
    int consumed = 0;
    if (std::sscanf(text, "%g%n", &scanned, &consumed) != 1) {
        diagnostics.warning({"Unable to scan floating-point value at '", text, "'"});
        return std::nullopt;
    }

    const float fraction = scanned > 0.0F ? std::min(scanned, 1.0F) : 0.0F;
    const Wide value =
        interpolate(code, fraction, load<Wide>(code, limits.minimum), load<Wide>(code, limits.maximum));
    return Number<Wide>{value, static_cast<std::size_t>(consumed)};
}

/// Signed types are scanned one width wider than they are stored, so that a number out of range is noticed
/// and saturated; unsigned ones and booleans at their own width, so that -1 means all ones. The pairing is
/// wanted.
bool scanRaw(std::uint32_t code, const char *text, std::int64_t &value, int &consumed) {
    const ScopedCLocale cLocale;
    switch (code) {
        case 1:
        case 3: {
            signed char scanned = 0;
            if (std::sscanf(text, "%hhi%n", &scanned, &consumed) != 1) return false;
            value = scanned;  // NOLINT(bugprone-signed-char-misuse): a number, and its sign is meant
            return true;
        }
        case 2:
        case 5: {
            short scanned = 0;
            if (std::sscanf(text, "%hi%n", &scanned, &consumed) != 1) return false;
            value = scanned;
            return true;
        }
        case 4:
        case 7: {
            int scanned = 0;
            if (std::sscanf(text, "%i%n", &scanned, &consumed) != 1) return false;
            value = scanned;
            return true;
        }
        default: {
            long long scanned = 0;
            if (std::sscanf(text, "%lli%n", &scanned, &consumed) != 1) return false;
            value = scanned;
            return true;
        }
    }
}

template <typename Wide>
std::optional<Number<Wide>> scanInteger(std::uint32_t code, const char *text, const ScanLimits &limits,
                                        const Diagnostics &diagnostics) {
    diagnostics.information({"Defaulting to integer value at '", text, "'"});
    std::int64_t scanned = 0;
    int consumed = 0;
    if (!scanRaw(code, text, scanned, consumed)) {
        diagnostics.warning({"Unable to scan integer value at '", text, "'"});
        return std::nullopt;
    }

    auto value = static_cast<Wide>(scanned);
    if constexpr (std::is_unsigned_v<Wide>) value &= highest<Wide>(code);  // the field's width
    if (limits.minimum != nullptr) value = std::max(value, load<Wide>(code, limits.minimum));
    if (limits.maximum != nullptr) value = std::min(value, load<Wide>(code, limits.maximum));
    return Number<Wide>{value, static_cast<std::size_t>(consumed)};
}

/// Whether a whole number that does not fit the field becomes the nearest one that does. In all other fields
/// it wraps: they keep its low bytes.
bool isSaturated(std::uint32_t code) {
    return isSignedComponent(code) && UVCTypeComponentByteSize(code) < sizeof(std::int64_t);
}

/// Rounds to a multiple of the step counted from zero, not from the minimum. The remainder has the value's
/// sign, so a negative value always moves towards zero. Both are wanted.
template <typename Wide>
Wide roundToStep(std::uint32_t code, Wide value, Wide step) {
    if (step < 2) return value;

    const Wide remainder = static_cast<Wide>(value % step);
    if (remainder == 0) return value;
    if (remainder < step / 2) return static_cast<Wide>(value - remainder);

    Wide sum = 0;
    const bool hasWrapped = __builtin_add_overflow(value, static_cast<Wide>(step - remainder), &sum);
    return hasWrapped && isSaturated(code) ? std::numeric_limits<Wide>::max() : sum;
}

template <typename Wide>
std::optional<std::size_t> scanNumber(std::uint32_t code, const char *text, void *field,
                                      const ScanLimits &limits, const Diagnostics &diagnostics) {
    const bool isFloatingPoint = looksFloatingPoint(text);
    if (isFloatingPoint) diagnostics.information({"Floating-point value detected at '", text, "'"});

    const auto number = isFloatingPoint ? scanFraction<Wide>(code, text, limits, diagnostics)
                                        : scanInteger<Wide>(code, text, limits, diagnostics);
    if (!number) return std::nullopt;

    Wide value = number->value;
    if (code == kBooleanComponent) {
        store(code, field, value != 0 ? 1 : 0);
        return number->consumed;
    }

    if (limits.stepSize != nullptr) value = roundToStep(code, value, load<Wide>(code, limits.stepSize));

    // Not after a fraction: a step past the end of the type wraps there, which is wanted.
    if (isSaturated(code) && !isFloatingPoint)
        value = std::clamp(value, lowest<Wide>(code), highest<Wide>(code));
    store(code, field, static_cast<std::uint64_t>(value));
    return number->consumed;
}

struct Keyword {
    std::string_view word;
    std::string_view requested;  ///< INFO line
    std::string_view missing;    ///< WARNING line
    const void *ScanLimits::*source;
};

constexpr std::array<Keyword, 3> kKeywords = {{
    {"default", "Default value requested", "Default value requested, none provided by control",
     &ScanLimits::defaultValue},
    {"minimum", "Minimum value requested", "Minimum value requested, none provided by control",
     &ScanLimits::minimum},
    {"maximum", "Maximum value requested", "Maximum value requested, none provided by control",
     &ScanLimits::maximum},
}};

std::optional<std::size_t> copyRequested(const Keyword &keyword, std::uint32_t code, void *field,
                                         const ScanLimits &limits, const Diagnostics &diagnostics) {
    diagnostics.information({keyword.requested});
    const void *source = limits.*keyword.source;
    if (source == nullptr) {
        diagnostics.warning({keyword.missing});
        return std::nullopt;
    }
    std::memcpy(field, source, UVCTypeComponentByteSize(code));
    return keyword.word.size();
}

struct BooleanWord {
    std::string_view word;
    std::uint64_t value;
};

// In the order in which they are tried: a word before its own first letter, so that all of it is taken.
constexpr std::array<BooleanWord, 10> kBooleanWords = {{
    {"yes", 1},
    {"y", 1},
    {"true", 1},
    {"t", 1},
    {"1", 1},
    {"no", 0},
    {"n", 0},
    {"false", 0},
    {"f", 0},
    {"0", 0},
}};

}  // namespace

ScanLimits ScanLimits::atOffset(std::size_t offset) const {
    const auto moved = [offset](const void *record) -> const void * {
        return record == nullptr ? nullptr : static_cast<const std::uint8_t *>(record) + offset;
    };
    return {moved(minimum), moved(maximum), moved(stepSize), moved(defaultValue)};
}

std::optional<std::size_t> scanComponent(std::uint32_t code, const char *text, void *field,
                                         const ScanLimits &limits, const Diagnostics &diagnostics) {
    if (!isValidComponent(code)) return std::nullopt;  // such a field has no bytes to assign

    for (const Keyword &keyword : kKeywords)
        if (ascii::beginsWith(text, keyword.word))
            return copyRequested(keyword, code, field, limits, diagnostics);

    if (code == kBooleanComponent) {
        for (const BooleanWord &boolean : kBooleanWords) {
            if (!ascii::beginsWith(text, boolean.word)) continue;
            store(code, field, boolean.value);
            return boolean.word.size();
        }
        diagnostics.warning({"Invalid boolean value at '", text, "'"});
    }

    return isSignedComponent(code) ? scanNumber<std::int64_t>(code, text, field, limits, diagnostics)
                                   : scanNumber<std::uint64_t>(code, text, field, limits, diagnostics);
}

}  // namespace uvc
