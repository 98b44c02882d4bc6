#pragma once

#include <umockdev.h>

#include <cstddef>
#include <cstring>
#include <memory>

/// The memory of a program that called ioctl, as umockdev hands it to whoever plays the kernel.
namespace fake {

struct GObjectDeleter {
    void operator()(void *object) const { g_object_unref(object); }
};
template <typename Object>
using GObjectPtr = std::unique_ptr<Object, GObjectDeleter>;

/// What the pointer at `offset` points to; null where it cannot be read.
inline GObjectPtr<UMockdevIoctlData> resolve(UMockdevIoctlData *data, std::size_t offset,
                                             std::size_t length) {
    return GObjectPtr<UMockdevIoctlData>(umockdev_ioctl_data_resolve(data, offset, length, nullptr));
}

template <typename Value>
Value read(const UMockdevIoctlData *data, std::size_t offset = 0) {
    Value value{};
    std::memcpy(&value, data->data + offset, sizeof value);
    return value;
}

template <typename Value>
void write(UMockdevIoctlData *data, std::size_t offset, Value value) {
    std::memcpy(data->data + offset, &value, sizeof value);
}

}  // namespace fake
