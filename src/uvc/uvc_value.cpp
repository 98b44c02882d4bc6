#include "uvc/uvc_value.h"

#include <cstdio>

std::shared_ptr<UVCValue> UVCValue::uvcValueWithType(std::shared_ptr<const UVCType> type) {
    if (!type) return nullptr;
    return std::make_shared<UVCValue>(Checked(), std::move(type));
}

UVCValue::UVCValue(Checked, std::shared_ptr<const UVCType> type)
    : type_(std::move(type)), bytes_(type_->byteSize()) {}

void *UVCValue::pointerToFieldAtIndex(std::size_t index) {
    return pointerAtOffset(type_->offsetToFieldAtIndex(index));
}

void *UVCValue::pointerToFieldWithName(std::string_view name) {
    return pointerAtOffset(type_->offsetToFieldWithName(name));
}

void *UVCValue::pointerAtOffset(std::size_t offset) {
    if (offset == 0) return nullptr;

    // "Not found" is added like any other offset, on purpose; callers ask only for fields that exist. Done on
    // the address as a number, since a pointer to before the buffer may not even be formed.
    const auto address = reinterpret_cast<std::uintptr_t>(bytes_.data()) + offset;
    return reinterpret_cast<void *>(address);  // NOLINT(performance-no-int-to-ptr)
}

void UVCValue::byteSwapHostToUSBEndian() {
    if (isSwappedToUSBEndian_) return;
    type_->byteSwapHostToUSBEndian(bytes_.data());
    isSwappedToUSBEndian_ = true;
}

void UVCValue::byteSwapUSBToHostEndian() {
    if (!isSwappedToUSBEndian_) return;
    type_->byteSwapUSBToHostEndian(bytes_.data());
    isSwappedToUSBEndian_ = false;
}

bool UVCValue::scanCString(const char *text, unsigned flags) {
    return scanCString(text, flags, nullptr, nullptr, nullptr, nullptr);
}

bool UVCValue::scanCString(const char *text, unsigned flags, const UVCValue *minimum,
                           const UVCValue *maximum) {
    return scanCString(text, flags, minimum, maximum, nullptr, nullptr);
}

bool UVCValue::scanCString(const char *text, unsigned flags, const UVCValue *minimum, const UVCValue *maximum,
                           const UVCValue *stepSize) {
    return scanCString(text, flags, minimum, maximum, stepSize, nullptr);
}

bool UVCValue::scanCString(const char *text, unsigned flags, const UVCValue *minimum, const UVCValue *maximum,
                           const UVCValue *stepSize, const UVCValue *defaultValue) {
    return type_->scanCString(text, bytes_.data(), flags, recordOf(minimum), recordOf(maximum),
                              recordOf(stepSize), recordOf(defaultValue));
}

// A record of another layout may be shorter than ours, so it must not be read as one of ours.
const void *UVCValue::recordOf(const UVCValue *other) const {
    return other != nullptr && type_->isEqual(other->type_.get()) ? other->valuePtr() : nullptr;
}

std::optional<std::string> UVCValue::stringValue() const {
    return type_->stringFromBuffer(bytes_.data());
}

void UVCValue::copyValue(const UVCValue *other) {
    if (other == nullptr || !type_->isEqual(other->type_.get())) return;
    bytes_ = other->bytes_;
}

bool UVCValue::isEqual(const UVCValue *other) const {
    if (other == nullptr) return false;
    return type_->isEqual(other->type_.get()) && bytes_ == other->bytes_;
}

std::string UVCValue::description() const {
    char part[64];
    std::snprintf(part, sizeof part, "UVCValue@%p { type: ", static_cast<const void *>(this));
    std::string text = part + type_->description() + "; bytes: [";
    const char *separator = "";
    for (const std::uint8_t byte : bytes_) {
        std::snprintf(part, sizeof part, "%s%02x", separator, static_cast<unsigned>(byte));
        text += part;
        separator = ":";
    }
    return text + "] }";
}
