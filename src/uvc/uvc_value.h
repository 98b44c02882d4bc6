#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "uvc/uvc_type.h"

/// One control value: the bytes of one record of its type, and whether they are in USB byte order now.
class UVCValue {
    struct Checked {};  // only the factory can name it

 public:
    /// A value of all-zero bytes in host order; null without a type.
    [[nodiscard]] static std::shared_ptr<UVCValue> uvcValueWithType(std::shared_ptr<const UVCType> type);

    UVCValue(Checked, std::shared_ptr<const UVCType> type);

    [[nodiscard]] const std::shared_ptr<const UVCType> &valueType() const { return type_; }
    [[nodiscard]] std::size_t byteSize() const { return bytes_.size(); }
    /// The record's bytes; they live as long as the value.
    [[nodiscard]] void *valuePtr() { return bytes_.data(); }
    [[nodiscard]] const void *valuePtr() const { return bytes_.data(); }
    [[nodiscard]] bool isSwappedToUSBEndian() const { return isSwappedToUSBEndian_; }

    /// Where a field's bytes stand. Null for a field at offset 0: on purpose, field pointers are for the
    /// later fields and valuePtr() is the first. For a field that does not exist the result is not null and
    /// must not be followed.
    [[nodiscard]] void *pointerToFieldAtIndex(std::size_t index);
    [[nodiscard]] void *pointerToFieldWithName(std::string_view name);

    /// Both may be repeated: a value already in the wanted order stays as it is.
    void byteSwapHostToUSBEndian();
    void byteSwapUSBToHostEndian();

    /// UVCType::scanCString into this value. A range, step or default that is null, or of a type that is not
    /// equal to this value's, counts as absent.
    [[nodiscard]] bool scanCString(const char *text, unsigned flags);
    [[nodiscard]] bool scanCString(const char *text, unsigned flags, const UVCValue *minimum,
                                   const UVCValue *maximum);
    [[nodiscard]] bool scanCString(const char *text, unsigned flags, const UVCValue *minimum,
                                   const UVCValue *maximum, const UVCValue *stepSize);
    [[nodiscard]] bool scanCString(const char *text, unsigned flags, const UVCValue *minimum,
                                   const UVCValue *maximum, const UVCValue *stepSize,
                                   const UVCValue *defaultValue);

    /// UVCType::stringFromBuffer of this value.
    [[nodiscard]] std::optional<std::string> stringValue() const;

    /// Takes over the other's bytes, not its byte order flag. Does nothing when it is null or the types
    /// differ.
    void copyValue(const UVCValue *other);
    /// Whether types and bytes are equal.
    [[nodiscard]] bool isEqual(const UVCValue *other) const;

    [[nodiscard]] std::string description() const;

 private:
    [[nodiscard]] void *pointerAtOffset(std::size_t offset);
    [[nodiscard]] const void *recordOf(const UVCValue *other) const;

    std::shared_ptr<const UVCType> type_;
    std::vector<std::uint8_t> bytes_;
    bool isSwappedToUSBEndian_ = false;
};
