#pragma once

#include <string>
#include <string_view>

namespace scenes {

/// True when `text` is well-formed UTF-8: no overlong form, no surrogate, nothing above U+10FFFF.
[[nodiscard]] bool isValidUtf8(std::string_view text);

/// `bytes` with every ill-formed part replaced by U+FFFD, one for each maximal subpart of a sequence (The
/// Unicode Standard, section 3.9, "U+FFFD Substitution of Maximal Subparts"). Well-formed text comes back
/// unchanged.
[[nodiscard]] std::string repairUtf8(std::string_view bytes);

/// Appends the UTF-8 form of a Unicode scalar value of U+0080 or more.
void appendLongScalar(std::string &text, char32_t scalar);

/// Appends the UTF-8 form of a Unicode scalar value.
inline void appendScalar(std::string &text, char32_t scalar) {
    if (scalar < 0x80) {
        text += static_cast<char>(scalar);
    } else {
        appendLongScalar(text, scalar);
    }
}

}  // namespace scenes
