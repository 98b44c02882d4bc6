#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "usb/libusb/libusb_handles.h"
#include "usb/usb.h"

namespace usb {

/// A VideoControl interface reached through libusb, for which no kernel driver may hold it. open() claims the
/// interface and close() releases it; the device node, once opened, stays open until this object goes or the
/// device does, so that the requests of one job do not wake the device anew each time.
class LibusbVideoControl : public VideoControl {
 public:
    LibusbVideoControl(LibusbDeviceRef device, std::uint8_t configuration, std::uint8_t interfaceNumber,
                       std::vector<std::uint8_t> classDescriptors);
    ~LibusbVideoControl() override;
    LibusbVideoControl(const LibusbVideoControl &) = delete;
    LibusbVideoControl &operator=(const LibusbVideoControl &) = delete;

    /// bConfigurationValue of the configuration that the interface is part of.
    [[nodiscard]] std::uint8_t configuration() const { return configuration_; }
    [[nodiscard]] std::uint8_t interfaceNumber() const override { return interfaceNumber_; }
    [[nodiscard]] std::span<const std::uint8_t> classDescriptors() const override {
        return classDescriptors_;
    }
    [[nodiscard]] Outcome open() override;
    [[nodiscard]] Outcome close() override;
    [[nodiscard]] Outcome controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) override;

 private:
    void giveBack();

    LibusbDeviceRef device_;
    std::uint8_t configuration_;
    std::uint8_t interfaceNumber_;
    std::vector<std::uint8_t> classDescriptors_;
    LibusbHandle handle_;
    bool claimed_ = false;
};

/// The VideoControl interface of the device's active configuration; null when there is none.
[[nodiscard]] std::unique_ptr<LibusbVideoControl> findVideoControl(const LibusbDeviceRef &device);

}  // namespace usb
