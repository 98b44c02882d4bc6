#include "scenes/utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace scenes {
namespace {

/// What a lead byte asks for: how many bytes follow, and the range of the first of them (the others are
/// always 80..BF). The narrower ranges keep out overlong forms, surrogates and values above U+10FFFF.
struct Expected {
    std::size_t following;
    unsigned char low;
    unsigned char high;
};

/// `following` is 0 for a byte that starts no longer sequence.
Expected expectedAfter(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return {1, 0x80, 0xBF};
    if (lead == 0xE0) return {2, 0xA0, 0xBF};
    if (lead == 0xED) return {2, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF) return {2, 0x80, 0xBF};
    if (lead == 0xF0) return {3, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3) return {3, 0x80, 0xBF};
    if (lead == 0xF4) return {3, 0x80, 0x8F};
    return {0, 0, 0};
}

struct Sequence {
    std::size_t length;  ///< bytes consumed, at least 1
    bool valid;
};

/// The sequence at the start of `text` (which is not empty), or the maximal subpart of one.
Sequence firstSequence(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return {1, true};
    Expected expected = expectedAfter(lead);
    if (expected.following == 0) return {1, false};
    for (std::size_t i = 1; i <= expected.following; ++i) {
        if (i == text.size()) return {i, false};
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < expected.low || byte > expected.high) return {i, false};
        expected.low = 0x80;
        expected.high = 0xBF;
    }
    return {expected.following + 1, true};
}

/// How many bytes at the start of `text` are well-formed.
std::size_t validLength(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size()) {
        // Most text is ASCII, of which eight bytes are looked at together.
        std::uint64_t eight = 0;
        if (text.size() - length >= sizeof eight) {
            std::memcpy(&eight, text.data() + length, sizeof eight);
            if ((eight & 0x8080'8080'8080'8080) == 0) {
                length += sizeof eight;
                continue;
            }
        }
        const Sequence sequence = firstSequence(text.substr(length));
        if (!sequence.valid) break;
        length += sequence.length;
    }
    return length;
}

}  // namespace

bool isValidUtf8(std::string_view text) {
    return validLength(text) == text.size();
}

std::string repairUtf8(std::string_view bytes) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::size_t valid = validLength(bytes);
    if (valid == bytes.size()) return std::string(bytes);
    std::string repaired;
    repaired.reserve(bytes.size() * replacement.size());  // a text that grew would stand in memory twice
    while (valid != bytes.size()) {
        repaired += bytes.substr(0, valid);
        repaired += replacement;
        bytes.remove_prefix(valid);
        bytes.remove_prefix(firstSequence(bytes).length);
        valid = validLength(bytes);
    }
    repaired += bytes;
    return repaired;
}

void appendLongScalar(std::string &text, char32_t scalar) {
    const auto tail = [&](unsigned shift) { text += static_cast<char>(0x80 | (scalar >> shift & 0x3F)); };
    if (scalar < 0x800) {
        text += static_cast<char>(0xC0 | scalar >> 6);
        tail(0);
    } else if (scalar < 0x10000) {
        text += static_cast<char>(0xE0 | scalar >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | scalar >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

}  // namespace scenes
