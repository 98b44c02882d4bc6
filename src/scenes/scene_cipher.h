#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// Triple DES in ECB mode under the scene key, which never leaves this unit.
namespace scenes {

/// `plain` padded (PKCS#7) and encrypted; a multiple of 8 bytes, at least 8. Nothing for 2 GiB less 16
/// bytes or more, or when OpenSSL refuses.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> encryptBlocks(std::span<const std::uint8_t> plain);

/// `cipher` decrypted into a buffer of (its length + 8) bytes rounded down to a multiple of 8; what is not
/// plain text in it is zeros. When `cipher` is whole blocks, the last plain byte alone says how many bytes of
/// padding become zeros: 1 to 8, any other value none. An incomplete last block is not decrypted, and no
/// padding is looked for then. All zeros for 2 GiB less 16 bytes or more, or when OpenSSL refuses.
[[nodiscard]] std::vector<std::uint8_t> decryptBlocks(std::span<const std::uint8_t> cipher);

}  // namespace scenes
