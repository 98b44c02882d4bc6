#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// Numbers in descriptors, requests and messages: little-endian on USB, big-endian in USB/IP.
namespace simulator {

using Bytes = std::vector<std::uint8_t>;

/// The number of `width` bytes, 1 to 4, at `at`. Bytes past the end count as 0.
[[nodiscard]] constexpr std::uint32_t numberAt(std::span<const std::uint8_t> bytes, std::size_t at,
                                               std::size_t width, std::endian order) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < width; ++i) {
        const std::size_t from = at + (order == std::endian::big ? i : width - 1 - i);
        number = number << 8 | (from < bytes.size() ? bytes[from] : 0u);
    }
    return number;
}

inline void append(Bytes &bytes, std::span<const std::uint8_t> more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

/// Collects bytes, and numbers of one byte order. A number loses what does not fit its width.
class ByteWriter {
 public:
    explicit ByteWriter(std::endian order) : order_(order) {}

    ByteWriter &u1(std::size_t number) { return append(number, 1); }
    ByteWriter &u2(std::size_t number) { return append(number, 2); }
    ByteWriter &u4(std::size_t number) { return append(number, 4); }
    ByteWriter &append(std::size_t number, std::size_t width) {
        for (std::size_t i = 0; i < width; ++i) {
            const std::size_t place = order_ == std::endian::big ? width - 1 - i : i;
            bytes_.push_back(static_cast<std::uint8_t>(number >> (8 * place)));
        }
        return *this;
    }
    ByteWriter &raw(std::span<const std::uint8_t> bytes) {
        simulator::append(bytes_, bytes);
        return *this;
    }
    ByteWriter &zeros(std::size_t count) {
        bytes_.resize(bytes_.size() + count, 0);
        return *this;
    }

    [[nodiscard]] Bytes finished() const { return bytes_; }
    /// With their count written over the first byte, as in every USB descriptor.
    [[nodiscard]] Bytes asDescriptor() const {
        Bytes bytes = bytes_;
        bytes.front() = static_cast<std::uint8_t>(bytes.size());
        return bytes;
    }

 private:
    std::endian order_;
    Bytes bytes_;
};

}  // namespace simulator
