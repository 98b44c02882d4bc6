#include "scenes/base64.h"

#include <QByteArray>
#include <array>
#include <cstddef>

namespace scenes {
namespace {

/// The value of each letter of the alphabet, -1 for any other byte.
constexpr std::array<std::int8_t, 256> kValues = [] {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<std::int8_t, 256> values{};
    values.fill(-1);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::int8_t>(i);
    return values;
}();

int base64Value(char letter) {
    return kValues[static_cast<unsigned char>(letter)];
}

}  // namespace

std::string base64Encode(std::string_view bytes) {
    return QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()))
        .toBase64()
        .toStdString();
}

// Not Qt's decoder: it either takes text with misplaced padding or refuses a trailing newline.
std::optional<std::vector<std::uint8_t>> base64DecodeIgnoringUnknown(std::string_view text) {
    std::vector<std::uint8_t> bytes(text.size() / 4 * 3 + 3);
    std::size_t written = 0;
    std::uint32_t bits = 0;
    std::size_t letters = 0;
    std::size_t pads = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        // Whole groups of letters are nearly all of a file. The last one is left to the steps below.
        for (; letters % 4 == 0 && pads == 0 && text.size() - i > 4; i += 4) {
            const int group = base64Value(text[i]) << 18 | base64Value(text[i + 1]) << 12 |
                              base64Value(text[i + 2]) << 6 | base64Value(text[i + 3]);
            if (group < 0) break;
            bytes[written++] = static_cast<std::uint8_t>(group >> 16);
            bytes[written++] = static_cast<std::uint8_t>(group >> 8 & 0xFF);
            bytes[written++] = static_cast<std::uint8_t>(group & 0xFF);
        }
        const int value = base64Value(text[i]);
        if (value < 0) {
            if (text[i] == '=') ++pads;
            continue;
        }
        if (pads > 0) return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        // The 2nd, 3rd and 4th letter of a group each complete a byte; 4, 2 and 0 bits are left over.
        const std::size_t place = letters++ % 4;
        if (place > 0) bytes[written++] = static_cast<std::uint8_t>(bits >> (6 - 2 * place) & 0xFF);
    }
    if ((letters + pads) % 4 != 0) return std::nullopt;
    bytes.resize(written);
    return bytes;
}

}  // namespace scenes
