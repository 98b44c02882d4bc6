#include "scenes/scene_layers.h"

#include <algorithm>

#include "platform/fatal.h"
#include "scenes/base64.h"
#include "scenes/scene_cipher.h"
#include "scenes/utf8.h"

namespace {

constexpr std::uint8_t kHighByteMark = 194;
// Not 256: what is shifted are character codes. Wanted.
constexpr std::int64_t kShiftWrap = 65535;

/// Absent when the sum leaves the 64-bit range.
std::optional<std::int64_t> shifted(std::uint8_t byte, std::int64_t shift) {
    std::int64_t code = 0;
    if (__builtin_add_overflow(std::int64_t{byte}, shift, &code)) return std::nullopt;
    if (code > kShiftWrap) code -= kShiftWrap;
    if (code < 0) code += kShiftWrap;
    return code;
}

bool isScalar(std::int64_t code) {
    return code >= 0 && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
}

}  // namespace

std::vector<std::uint8_t> caesarDataToData(const std::vector<std::uint8_t> &arrayInicial,
                                           std::int64_t shift) {
    std::vector<std::uint8_t> result;
    result.reserve(arrayInicial.size());
    for (const std::uint8_t byte : arrayInicial) {
        const auto code = shifted(byte, shift);
        if (!code || *code < 0 || *code > 255) platform::fatalStop();
        result.push_back(static_cast<std::uint8_t>(*code));
    }
    return result;
}

std::string caesarDataToString(const std::vector<std::uint8_t> &value, std::int64_t size,
                               std::int64_t shift) {
    const auto wanted = static_cast<std::size_t>(std::max<std::int64_t>(size, 1));
    const auto bytes = std::span(value).first(std::min(wanted, value.size()));
    std::string text(bytes.size(), '\0');
    // Most of it, if not all, becomes ASCII.
    std::size_t done = 0;
    for (; done < bytes.size(); ++done) {
        const auto code = shifted(bytes[done], shift);
        if (!code || *code < 0 || *code > 127) break;
        text[done] = static_cast<char>(*code);
    }
    text.resize(done);
    text.reserve(done + 3 * (bytes.size() - done));  // a large text that grew would stand in memory twice
    for (const std::uint8_t byte : bytes.subspan(done)) {
        const auto code = shifted(byte, shift);
        if (!code || !isScalar(*code)) platform::fatalStop();
        scenes::appendScalar(text, static_cast<char32_t>(*code));
    }
    return text;
}

std::optional<std::string> String_encrypt(std::span<const std::uint8_t> bytes, std::int32_t length) {
    if (length < 0 || static_cast<std::size_t>(length) > bytes.size()) return std::nullopt;
    std::vector<std::uint8_t> expanded;
    expanded.reserve(static_cast<std::size_t>(length) * 2);
    for (const std::uint8_t byte : bytes.first(static_cast<std::size_t>(length))) {
        if (byte >= 128) expanded.push_back(kHighByteMark);
        expanded.push_back(byte);
    }
    const auto cipher = scenes::encryptBlocks(expanded);
    if (!cipher) return std::nullopt;
    return scenes::base64Encode(std::string(cipher->begin(), cipher->end()));
}

std::size_t String_decrypt(std::string_view text, std::span<std::uint8_t> out) {
    const auto cipher = scenes::base64DecodeIgnoringUnknown(text);
    // Text that is not base64 gives no cipher bytes, so the file of another program reads as an empty room.
    auto plain = scenes::decryptBlocks(cipher ? std::span<const std::uint8_t>(*cipher)
                                              : std::span<const std::uint8_t>());
    std::erase(plain, kHighByteMark);
    std::copy_n(plain.begin(), std::min(plain.size(), out.size()), out.begin());
    return plain.size();
}
