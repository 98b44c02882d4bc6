#pragma once

#include <libusb.h>

#include <memory>

/// libusb's things with their deleters.
namespace usb {

/// Shared by the registry and by all that came from it, so that nothing outlives the context it belongs to.
using LibusbContext = std::shared_ptr<libusb_context>;

struct ConfigDeleter {
    void operator()(libusb_config_descriptor *config) const { libusb_free_config_descriptor(config); }
};
using LibusbConfig = std::unique_ptr<libusb_config_descriptor, ConfigDeleter>;

struct HandleDeleter {
    void operator()(libusb_device_handle *handle) const { libusb_close(handle); }
};
using LibusbHandle = std::unique_ptr<libusb_device_handle, HandleDeleter>;

/// A reference to a device, which holds the device's context as well.
using LibusbDeviceRef = std::shared_ptr<libusb_device>;

/// A new context; null when USB cannot be reached at all.
[[nodiscard]] LibusbContext makeLibusbContext();

/// A reference of its own to a device of `context`.
[[nodiscard]] LibusbDeviceRef makeDeviceRef(LibusbContext context, libusb_device *device);

}  // namespace usb
