#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Character classes of the library's two text formats. They are ASCII whatever the process's locale says: a
/// field name must not change its lower-case form under a Turkish locale, nor a byte above 127 become a
/// letter.
namespace uvc::ascii {

[[nodiscard]] constexpr bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
[[nodiscard]] constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
[[nodiscard]] constexpr bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}
[[nodiscard]] constexpr bool isLetter(char c) {
    return isUpper(c) || (c >= 'a' && c <= 'z');
}
[[nodiscard]] constexpr char toLower(char c) {
    return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] inline std::string toLower(std::string_view text) {
    std::string lower(text);
    for (char &c : lower) c = toLower(c);
    return lower;
}

[[nodiscard]] constexpr bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;

    for (std::size_t i = 0; i < a.size(); ++i)
        if (toLower(a[i]) != toLower(b[i])) return false;
    return true;
}

/// Whether the NUL-terminated `text` begins with `word`; `word` is lower-case.
[[nodiscard]] constexpr bool beginsWith(const char *text, std::string_view word) {
    for (std::size_t i = 0; i < word.size(); ++i)
        if (toLower(text[i]) != word[i]) return false;  // ends at the text's NUL, which no word holds
    return true;
}

[[nodiscard]] constexpr const char *skipBlanks(const char *text) {
    while (isBlank(*text)) ++text;
    return text;
}

}  // namespace uvc::ascii
