#pragma once

#include <cstddef>
#include <cstdint>

/// Impossible states end here, without a message: the program stops (SIGABRT) after the standard streams were
/// flushed, so that the diagnostic lines printed so far are not lost.
namespace platform {

[[noreturn]] void fatalStop();

/// The element at `index`; fatal stop when `index` is outside the list.
template <typename List>
[[nodiscard]] auto &elementAt(List &list, std::int64_t index) {
    if (index < 0 || static_cast<std::uint64_t>(index) >= list.size()) fatalStop();
    return list[static_cast<std::size_t>(index)];
}

/// The value under `key`; fatal stop when the dictionary does not hold it.
template <typename Dictionary, typename Key>
[[nodiscard]] auto &valueFor(Dictionary &dictionary, const Key &key) {
    const auto found = dictionary.find(key);
    if (found == dictionary.end()) fatalStop();
    return found->second;
}

/// The sum; fatal stop when it leaves the signed 64-bit range.
[[nodiscard]] inline std::int64_t checkedAdd(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) fatalStop();
    return sum;
}

}  // namespace platform
