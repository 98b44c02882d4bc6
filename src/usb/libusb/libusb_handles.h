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
class LibusbDeviceRef {
 public:
    /// `device` belongs to `context`.
    LibusbDeviceRef(LibusbContext context, libusb_device *device);
    LibusbDeviceRef(const LibusbDeviceRef &other);
    LibusbDeviceRef(LibusbDeviceRef &&) noexcept = default;
    LibusbDeviceRef &operator=(LibusbDeviceRef other) noexcept;
    ~LibusbDeviceRef() = default;

    [[nodiscard]] libusb_device *get() const { return device_.get(); }

 private:
    struct Deleter {
        void operator()(libusb_device *device) const { libusb_unref_device(device); }
    };

    LibusbContext context_;  // goes after the device
    std::unique_ptr<libusb_device, Deleter> device_;
};

/// A new context; null when USB cannot be reached at all.
[[nodiscard]] LibusbContext makeLibusbContext();

}  // namespace usb
