#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace scenes {

/// Standard alphabet with padding, no line breaks (RFC 4648, section 4).
[[nodiscard]] std::string base64Encode(std::string_view bytes);

/// The bytes of base64 text, every byte outside the alphabet skipped. Nothing when a letter follows a padding
/// sign or letters and padding signs do not fill up groups of four.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> base64DecodeIgnoringUnknown(std::string_view text);

}  // namespace scenes
