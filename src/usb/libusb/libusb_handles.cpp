#include "usb/libusb/libusb_handles.h"

#include <utility>

namespace usb {

LibusbContext makeLibusbContext() {
    libusb_context *context = nullptr;
    if (libusb_init(&context) != LIBUSB_SUCCESS) return nullptr;
    return {context, &libusb_exit};
}

LibusbDeviceRef::LibusbDeviceRef(LibusbContext context, libusb_device *device)
    : context_(std::move(context)), device_(libusb_ref_device(device)) {}

LibusbDeviceRef::LibusbDeviceRef(const LibusbDeviceRef &other)
    : LibusbDeviceRef(other.context_, other.get()) {}

LibusbDeviceRef &LibusbDeviceRef::operator=(LibusbDeviceRef other) noexcept {
    context_.swap(other.context_);
    device_.swap(other.device_);
    return *this;
}

}  // namespace usb
