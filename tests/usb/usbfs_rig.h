#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/without_rights.h"
#include "usb/contract.h"
#include "usb/fake_usbfs.h"

namespace contract {

/// A bus made by umockdev.
template <typename Registry>
class UsbfsRig : public Rig {
 public:
    [[nodiscard]] const usb::DeviceRegistry &registry() const override { return *registry_; }
    void dropRegistry() override { registry_.reset(); }

    void plug(const Camera &camera, std::uint8_t bus, const Ports &ports) override {
        usbfs.plug(camera, bus, ports);
    }
    void unplug(const Camera &camera) override { usbfs.unplug(camera); }
    void plugKeyboard(std::uint8_t bus, const Ports &ports) override {
        usbfs.plugImage(fake::keyboardImage(), bus, ports);
    }

    void holdElsewhere(const Camera &camera) override { usbfs.nodeOf(camera).holdElsewhere(); }
    /// Closes all files that lead to the camera.
    void withoutRights(const Camera &camera, const std::function<void()> &action) override {
        std::vector<std::string> files{usbfs.nodeFileOf(camera)};
        for (const std::string &node : usbfs.videoNodesOf(camera)) files.push_back(usbfs.fileOf(node));
        const support::WithoutRights guard(files);
        action();
    }

    [[nodiscard]] int openInterfaces() const override { return usbfs.claimedInterfaces(); }

    fake::Usbfs usbfs;

 private:
    std::unique_ptr<Registry> registry_ = std::make_unique<Registry>();
};

}  // namespace contract
