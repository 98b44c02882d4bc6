#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "support/without_rights.h"
#include "usb/contract.h"
#include "usb/fake_usbfs.h"

namespace contract {

/// How many of this process's open files are `path`.
inline int openFiles(const std::string &path) {
    namespace fs = std::filesystem;
    int count = 0;
    std::error_code error;
    const fs::path file = fs::canonical(path);
    for (const auto &entry : fs::directory_iterator("/proc/self/fd"))
        if (fs::read_symlink(entry.path(), error) == file) ++count;
    return count;
}

/// A bus made by umockdev. `bound`: the kernel's driver takes each camera as soon as it is plugged in.
template <typename Registry, bool bound = false>
class UsbfsRig : public Rig {
 public:
    [[nodiscard]] const usb::DeviceRegistry &registry() const override { return *registry_; }
    void dropRegistry() override { registry_.reset(); }

    void plug(const Camera &camera, std::uint8_t bus, const Ports &ports) override {
        usbfs.plug(camera, bus, ports);
        if (bound) usbfs.bindDriver(camera);
    }
    void unplug(const Camera &camera) override { usbfs.unplug(camera); }
    void plugKeyboard(std::uint8_t bus, const Ports &ports) override {
        usbfs.plugImage(fake::keyboardImage(), bus, ports);
    }

    void holdElsewhere(const Camera &camera) override {
        if (bound) usbfs.unbindDriver(camera);
        usbfs.nodeOf(camera).holdElsewhere();
    }
    /// Closes all files that lead to the camera.
    void withoutRights(const Camera &camera, const std::function<void()> &action) override {
        std::vector<std::string> files{usbfs.nodeFileOf(camera)};
        for (const std::string &node : usbfs.videoNodesOf(camera)) files.push_back(usbfs.fileOf(node));
        const support::WithoutRights guard(files);
        action();
    }

    [[nodiscard]] int openInterfaces() const override {
        int open = usbfs.claimedInterfaces();
        for (const std::string &node : usbfs.videoNodes()) open += openFiles(usbfs.fileOf(node));
        return open;
    }

    fake::Usbfs usbfs;

 private:
    std::unique_ptr<Registry> registry_ = std::make_unique<Registry>();
};

}  // namespace contract
