#include "uvc/uvc_component.h"

#include <array>
#include <cstring>

namespace {

struct Component {
    const char *token;
    std::size_t byteSize;
    bool isSigned;
    const char *verboseName;
};

constexpr std::array<Component, uvc::kLastComponent + 1> kComponents = {{
    {"<invalid>", 0, false, "<invalid>"},
    {"B", 1, false, "boolean"},
    {"S1", 1, true, "signed 8-bit integer"},
    {"U1", 1, false, "unsigned 8-bit integer"},
    {"S2", 2, true, "signed 16-bit integer"},
    {"U2", 2, false, "unsigned 16-bit integer"},
    {"S4", 4, true, "signed 32-bit integer"},
    {"U4", 4, false, "unsigned 32-bit integer"},
    {"S8", 8, true, "signed 64-bit integer"},
    {"U8", 8, false, "unsigned 64-bit integer"},
}};

const Component *componentOf(std::uint32_t code) {
    return code < kComponents.size() ? &kComponents[code] : nullptr;
}

// Wire bytes stand at any address, so they are copied rather than looked at through a wider pointer.
template <typename Integer>
Integer loadAs(const void *field) {
    Integer value = 0;
    std::memcpy(&value, field, sizeof value);
    return value;
}

template <typename Integer>
void storeAs(void *field, std::uint64_t bits) {
    const auto value = static_cast<Integer>(bits);
    std::memcpy(field, &value, sizeof value);
}

}  // namespace

std::size_t UVCTypeComponentByteSize(std::uint32_t code) {
    const Component *component = componentOf(code);
    return component == nullptr ? 0 : component->byteSize;
}

// NOLINTNEXTLINE(bugprone-reserved-identifier)
const char *__UVCTypeComponentTypeString(std::uint32_t code) {
    const Component *component = componentOf(code);
    return component == nullptr ? nullptr : component->token;
}

// NOLINTNEXTLINE(bugprone-reserved-identifier)
const char *__UVCTypeComponentVerboseTypeString(std::uint32_t code) {
    const Component *component = componentOf(code);
    return component == nullptr ? nullptr : component->verboseName;
}

namespace uvc {

bool isSignedComponent(std::uint32_t code) {
    const Component *component = componentOf(code);
    return component != nullptr && component->isSigned;
}

std::uint64_t loadUnsigned(std::uint32_t code, const void *field) {
    switch (UVCTypeComponentByteSize(code)) {
        case 1:
            return loadAs<std::uint8_t>(field);
        case 2:
            return loadAs<std::uint16_t>(field);
        case 4:
            return loadAs<std::uint32_t>(field);
        case 8:
            return loadAs<std::uint64_t>(field);
        default:
            return 0;
    }
}

std::int64_t loadSigned(std::uint32_t code, const void *field) {
    switch (UVCTypeComponentByteSize(code)) {
        case 1:
            return loadAs<std::int8_t>(field);
        case 2:
            return loadAs<std::int16_t>(field);
        case 4:
            return loadAs<std::int32_t>(field);
        case 8:
            return loadAs<std::int64_t>(field);
        default:
            return 0;
    }
}

void store(std::uint32_t code, void *field, std::uint64_t bits) {
    switch (UVCTypeComponentByteSize(code)) {
        case 1:
            storeAs<std::uint8_t>(field, bits);
            return;
        case 2:
            storeAs<std::uint16_t>(field, bits);
            return;
        case 4:
            storeAs<std::uint32_t>(field, bits);
            return;
        case 8:
            storeAs<std::uint64_t>(field, bits);
            return;
        default:
            return;
    }
}

}  // namespace uvc
