#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// Triple DES in ECB mode under the scene key, which never leaves this unit.
namespace scenes {

/// `plain` padded (PKCS#7) and encrypted; a multiple of 8 bytes, at least 8. Nothing when the cipher fails.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encryptBlocks(std::span<const std::uint8_t> plain);

/// `cipher` decrypted into a zero-filled buffer of (its length + 8) rounded down to a multiple of 8. The last
/// plain byte alone says how much padding is taken off: 1 to 8 bytes, anything else none. A ragged end is
/// left as zeros, and so is everything when the cipher fails.
[[nodiscard]] std::vector<std::uint8_t> decryptBlocks(std::span<const std::uint8_t> cipher);

}  // namespace scenes
