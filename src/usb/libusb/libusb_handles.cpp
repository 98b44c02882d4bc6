#include "usb/libusb/libusb_handles.h"

#include <utility>

namespace usb {

LibusbContext makeLibusbContext() {
    libusb_context *context = nullptr;
    if (libusb_init(&context) != LIBUSB_SUCCESS) return nullptr;
    return {context, &libusb_exit};
}

LibusbDeviceRef makeDeviceRef(LibusbContext context, libusb_device *device) {
    return {libusb_ref_device(device),
            [held = std::move(context)](libusb_device *last) { libusb_unref_device(last); }};
}

}  // namespace usb
