#include "usb/v4l2/translation.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace usb::v4l2 {

namespace {

/// GET_INFO bits (USB Video Class 1.1, section 4.1.2).
constexpr std::uint8_t kSupportsGet = 1u << 0;
constexpr std::uint8_t kSupportsSet = 1u << 1;
constexpr std::uint8_t kDisabledByAutomatic = 1u << 2;
constexpr std::uint8_t kAutoUpdate = 1u << 3;

/// The UVC bits of V4L2's modes auto, manual, shutter priority and aperture priority.
constexpr std::array<std::uint8_t, kExposureModes> kExposureModeBits{2, 1, 4, 8};

constexpr std::int64_t kFastest = 255;

/// Where the parts of a speed lie, counted from the row's offset.
std::size_t sizeByteOf(const Row &row) {
    return std::size_t{row.offset} + row.width - 1u;
}

bool isSpeed(const Row &row) {
    return row.coding == Coding::speed || row.coding == Coding::zoomSpeed;
}

std::int32_t plainNumber(const Row &row, std::span<const std::uint8_t> data) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < row.width; ++i) bits |= std::uint32_t{data[row.offset + i]} << (8 * i);

    const unsigned width = 8u * row.width;
    const bool negative = row.isSigned && (data[std::size_t{row.offset} + row.width - 1u] & 0x80u) != 0;
    if (negative && width < 32) bits |= ~std::uint32_t{0} << width;
    return static_cast<std::int32_t>(bits);
}

void putPlainNumber(const Row &row, std::int64_t number, std::span<std::uint8_t> data) {
    const auto bits = static_cast<std::uint64_t>(number);
    for (std::size_t i = 0; i < row.width; ++i)
        data[row.offset + i] = static_cast<std::uint8_t>(bits >> (8 * i));
}

std::optional<std::int32_t> modeFrom(std::uint8_t bit) {
    const auto found = std::ranges::find(kExposureModeBits, bit);
    if (found == kExposureModeBits.end()) return std::nullopt;
    return static_cast<std::int32_t>(found - kExposureModeBits.begin());
}

std::optional<std::int32_t> speedFrom(const Row &row, std::span<const std::uint8_t> data) {
    if (row.coding == Coding::zoomSpeed && data[row.offset + 1u] != 0) return std::nullopt;

    const std::int32_t size = data[sizeByteOf(row)];
    const auto direction = static_cast<std::int8_t>(data[row.offset]);
    if (direction == 0) return 0;
    return direction > 0 ? size : -size;
}

void putSpeed(const Row &row, std::int64_t speed, std::uint8_t direction, std::span<std::uint8_t> data) {
    std::fill_n(data.begin() + row.offset, row.width, std::uint8_t{0});
    data[row.offset] = direction;
    // The bound comes first: the lowest number there is has no absolute value.
    data[sizeByteOf(row)] = static_cast<std::uint8_t>(std::abs(std::clamp(speed, -kFastest, kFastest)));
}

std::uint8_t directionOf(std::int64_t speed) {
    if (speed == 0) return 0;
    return speed > 0 ? 0x01 : 0xFF;
}

}  // namespace

std::optional<std::int32_t> numberFrom(const Row &row, std::span<const std::uint8_t> data) {
    if (isSpeed(row)) return speedFrom(row, data);
    if (row.coding == Coding::exposureMode) return modeFrom(data[row.offset]);
    return plainNumber(row, data);
}

bool putNumber(const Row &row, std::int64_t number, std::span<std::uint8_t> data) {
    if (isSpeed(row)) {
        putSpeed(row, number, directionOf(number), data);
        return true;
    }
    if (row.coding == Coding::exposureMode) {
        data[row.offset] = exposureModeBit(number);
        return data[row.offset] != 0;
    }
    putPlainNumber(row, number, data);
    return true;
}

bool putLimit(const Row &row, std::int64_t number, std::span<std::uint8_t> data) {
    if (!isSpeed(row)) return putNumber(row, number, data);
    putSpeed(row, number, 0, data);
    return true;
}

std::optional<std::int32_t> nearestWithin(const Row &row, std::int32_t number, std::int64_t minimum,
                                          std::int64_t maximum) {
    if (row.coding != Coding::number)
        return number >= minimum && number <= maximum ? std::optional(number) : std::nullopt;

    // V4L2's numbers of 32 bits are signed, and carry an unsigned one of ours bit by bit.
    const bool isUnsigned = !row.isSigned && row.width == 4;
    const auto meant = [isUnsigned](std::int64_t value) {
        return isUnsigned ? static_cast<std::uint32_t>(value) : value;
    };
    const std::int64_t lowest = meant(minimum);
    const std::int64_t highest = meant(maximum);
    if (lowest > highest) return number;
    return static_cast<std::int32_t>(std::clamp(meant(number), lowest, highest));
}

std::uint8_t exposureModeBit(std::int64_t mode) {
    if (mode < 0 || mode >= std::int64_t{kExposureModes}) return 0;
    return kExposureModeBits.at(static_cast<std::size_t>(mode));
}

std::uint8_t infoFrom(std::uint32_t flags) {
    std::uint8_t info = kSupportsGet | kSupportsSet;
    if ((flags & V4L2_CTRL_FLAG_DISABLED) != 0) info = 0;
    if ((flags & V4L2_CTRL_FLAG_WRITE_ONLY) != 0) info &= static_cast<std::uint8_t>(~kSupportsGet);
    if ((flags & V4L2_CTRL_FLAG_READ_ONLY) != 0) info &= static_cast<std::uint8_t>(~kSupportsSet);
    if ((flags & (V4L2_CTRL_FLAG_INACTIVE | V4L2_CTRL_FLAG_GRABBED)) != 0) info |= kDisabledByAutomatic;
    if ((flags & V4L2_CTRL_FLAG_VOLATILE) != 0) info |= kAutoUpdate;
    return info;
}

}  // namespace usb::v4l2
