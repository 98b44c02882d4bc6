#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// Shared by the fuzzers: the bytes of one input as what a case needs, and promises that end the run.
namespace fuzz {

/// Ends the program where a promise is broken; the fuzzer then keeps the input.
inline void promise(bool kept, const char *what) {
    if (kept) return;
    std::fprintf(stderr, "broken promise: %s\n", what);
    std::abort();
}

/// Takes values off the front of an input; zeros when it is used up.
class Input {
 public:
    Input(const std::uint8_t *data, std::size_t size) : rest_(data, size) {}

    [[nodiscard]] bool isUsedUp() const { return rest_.empty(); }
    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const std::uint8_t first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }
    bool flag() { return (byte() & 1) != 0; }
    std::int32_t number() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) value = value << 8 | byte();
        return static_cast<std::int32_t>(value);
    }
    std::vector<std::uint8_t> bytes(std::size_t count) {
        std::vector<std::uint8_t> taken(count, 0);
        for (std::uint8_t &value : taken) value = byte();
        return taken;
    }
    /// All that is left.
    std::string restText() {
        std::string taken(rest_.begin(), rest_.end());
        rest_ = {};
        return taken;
    }

 private:
    std::span<const std::uint8_t> rest_;
};

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
