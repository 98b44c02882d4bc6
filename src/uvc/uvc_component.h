#pragma once

#include <cstddef>
#include <cstdint>

/// The component types that a control value's record is made of: code 0 is invalid, 1 "B", 2 "S1", 3 "U1", 4
/// "S2", 5 "U2", 6 "S4", 7 "U4", 8 "S8", 9 "U8". A code above 9 is answered with 0 or null.

/// Size in bytes of a field of this code.
[[nodiscard]] std::size_t UVCTypeComponentByteSize(std::uint32_t code);

// The two leading underscores belong to the library's published names.
// NOLINTBEGIN(bugprone-reserved-identifier)

/// The token that stands for this code in a type description.
[[nodiscard]] const char *__UVCTypeComponentTypeString(std::uint32_t code);
/// What a person calls this code: "signed 16-bit integer".
[[nodiscard]] const char *__UVCTypeComponentVerboseTypeString(std::uint32_t code);
// NOLINTEND(bugprone-reserved-identifier)

namespace uvc {

inline constexpr std::uint32_t kInvalidComponent = 0;
inline constexpr std::uint32_t kBooleanComponent = 1;
inline constexpr std::uint32_t kLastComponent = 9;

/// Whether a field of this code holds a value at all (codes 1 to 9).
[[nodiscard]] constexpr bool isValidComponent(std::uint32_t code) {
    return code != kInvalidComponent && code <= kLastComponent;
}

[[nodiscard]] bool isSignedComponent(std::uint32_t code);

/// Reads a field of a valid code, in host order and at any alignment, zero-extended.
[[nodiscard]] std::uint64_t loadUnsigned(std::uint32_t code, const void *field);
/// The same, sign-extended from the field's width.
[[nodiscard]] std::int64_t loadSigned(std::uint32_t code, const void *field);
/// Stores the lowest bytes of `bits` into a field of a valid code, in host order and at any alignment.
void store(std::uint32_t code, void *field, std::uint64_t bits);

}  // namespace uvc
