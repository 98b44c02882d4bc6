#include "scenes/base64.h"

#include <QByteArray>
#include <cstddef>

namespace scenes {
namespace {

/// The value of a letter of the alphabet, -1 for any other byte.
int base64Value(unsigned char letter) {
    if (letter >= 'A' && letter <= 'Z') return letter - 'A';
    if (letter >= 'a' && letter <= 'z') return letter - 'a' + 26;
    if (letter >= '0' && letter <= '9') return letter - '0' + 52;
    if (letter == '+') return 62;
    if (letter == '/') return 63;
    return -1;
}

}  // namespace

std::string base64Encode(std::string_view bytes) {
    return QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()))
        .toBase64()
        .toStdString();
}

// Not Qt's decoder: it either takes text with misplaced padding or refuses a trailing newline.
std::optional<std::vector<std::uint8_t>> base64DecodeIgnoringUnknown(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    std::size_t letters = 0;
    std::size_t pads = 0;
    for (const char character : text) {
        const int value = base64Value(static_cast<unsigned char>(character));
        if (value < 0) {
            if (character == '=') ++pads;
            continue;
        }
        if (pads > 0) return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        // The 2nd, 3rd and 4th letter of a group each complete a byte; 4, 2 and 0 bits are left over.
        const std::size_t place = letters++ % 4;
        if (place > 0) bytes.push_back(static_cast<std::uint8_t>(bits >> (6 - 2 * place) & 0xFF));
    }
    if ((letters + pads) % 4 != 0) return std::nullopt;
    return bytes;
}

}  // namespace scenes
