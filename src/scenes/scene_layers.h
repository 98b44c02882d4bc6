#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The layers of a scene file below its JSON text, each a pure function with its reverse. Outwards: base64,
/// byte shift, then (String_encrypt) a byte 194 before every high byte, Triple DES, base64.

/// Every byte plus `shift`, in order. Sums wrap at 65535, the range of the character codes that the shift was
/// made for; one that then is no byte (0..255) is a fatal stop, never a wrap.
[[nodiscard]] std::vector<std::uint8_t> caesarDataToData(const std::vector<std::uint8_t> &arrayInicial,
                                                         std::int64_t shift);

/// The first `size` bytes of `value` plus `shift`, each as the character of that code; the first byte is
/// taken even when `size` is 0 or less, and nothing is taken beyond the end of `value`. Sums wrap at 65535,
/// so 0 shifted by -11 is U+FFF4. One that is no Unicode scalar value is a fatal stop.
[[nodiscard]] std::string caesarDataToString(const std::vector<std::uint8_t> &value, std::int64_t size,
                                             std::int64_t shift);

/// The first `length` bytes expanded (194 before each byte of 128 or more), encrypted and given as base64
/// text without line breaks. Nothing when `length` is negative or more than there are, or when the bytes
/// cannot be encrypted.
[[nodiscard]] std::optional<std::string> String_encrypt(std::span<const std::uint8_t> bytes,
                                                        std::int32_t length);

/// The reverse: writes the plain bytes without those of value 194 into `out`. The zeros that decryptBlocks()
/// leaves behind the plain text are among them. Returns how many bytes there are; those for which `out` has
/// no room are counted and not written. Never fails: damaged or foreign text gives meaningless bytes.
[[nodiscard]] std::size_t String_decrypt(std::string_view text, std::span<std::uint8_t> out);
