#include "uvc/scripted_device.h"

#include <algorithm>

namespace scripted {
namespace {

class ScriptedInterface : public usb::VideoControl {
 public:
    explicit ScriptedInterface(std::shared_ptr<Script> script) : script_(std::move(script)) {
        ++script_->interfacesAlive;
    }
    ~ScriptedInterface() override { --script_->interfacesAlive; }
    ScriptedInterface(const ScriptedInterface &) = delete;
    ScriptedInterface &operator=(const ScriptedInterface &) = delete;

    std::uint8_t interfaceNumber() const override { return script_->interfaceNumber; }
    std::span<const std::uint8_t> classDescriptors() const override { return script_->descriptors; }

    usb::Outcome open() override {
        ++script_->opens;
        if (script_->openOutcome == usb::Outcome::done) script_->isOpen = true;
        return script_->openOutcome;
    }

    usb::Outcome close() override {
        ++script_->closes;
        if (script_->closeOutcome == usb::Outcome::done) script_->isOpen = false;
        return script_->closeOutcome;
    }

    usb::Outcome controlRequest(const usb::SetupPacket &setup, std::span<std::uint8_t> data) override {
        if (!script_->isOpen) return usb::Outcome::failed;
        script_->setups.push_back(setup);
        if ((setup.requestType & 0x80u) == 0) {
            script_->lastSent.assign(data.begin(), data.end());
            return script_->acceptsSets ? usb::Outcome::done : usb::Outcome::refused;
        }
        const auto answer =
            script_->answers.find({static_cast<std::uint8_t>(setup.value >> 8), setup.request});
        if (answer == script_->answers.end() || answer->second.size() != data.size()) {
            std::fill(data.begin(), data.end(), std::uint8_t{0xEE});  // what a failure leaves is unspecified
            return usb::Outcome::refused;
        }
        std::copy(answer->second.begin(), answer->second.end(), data.begin());
        return usb::Outcome::done;
    }

 private:
    std::shared_ptr<Script> script_;
};

class ScriptedDevice : public usb::Device {
 public:
    ScriptedDevice(std::shared_ptr<Script> script, Ids ids)
        : script_(std::move(script)), ids_(std::move(ids)) {}

    std::optional<std::uint16_t> vendorId() const override { return ids_.vendorId; }
    std::optional<std::uint16_t> productId() const override { return ids_.productId; }
    std::optional<std::uint32_t> locationId() const override { return ids_.locationId; }
    std::optional<std::string> registryName() const override { return ids_.name; }
    std::unique_ptr<usb::VideoControl> videoControl() const override {
        return script_->hasVideoControl ? std::make_unique<ScriptedInterface>(script_) : nullptr;
    }

 private:
    std::shared_ptr<Script> script_;
    Ids ids_;
};

class ScriptedRegistry : public usb::DeviceRegistry {
 public:
    explicit ScriptedRegistry(std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices)
        : devices_(std::move(devices)) {}
    std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices() const override {
        return devices_;
    }

 private:
    std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices_;
};

Bytes withControls(Bytes descriptor, const Bytes &controls) {
    descriptor.push_back(static_cast<std::uint8_t>(controls.size()));
    descriptor.insert(descriptor.end(), controls.begin(), controls.end());
    return descriptor;
}

}  // namespace

Bytes withHeader(const std::vector<Bytes> &units) {
    Bytes block = {13, 0x24, 1, 0x10, 0x01, 0, 0, 0x80, 0xC3, 0xC9, 0x01, 1, 1};
    for (const Bytes &unit : units) block.insert(block.end(), unit.begin(), unit.end());
    block[5] = static_cast<std::uint8_t>(block.size() & 0xFF);
    block[6] = static_cast<std::uint8_t>(block.size() >> 8);
    return block;
}

Bytes cameraTerminal(const Bytes &controls) {
    Bytes descriptor = withControls({0, 0x24, 2, 7, 0x01, 0x02, 0, 0, 0, 0, 0, 0, 0, 0}, controls);
    descriptor[0] = static_cast<std::uint8_t>(descriptor.size());
    return descriptor;
}

Bytes processingUnit(const Bytes &controls) {
    Bytes descriptor = withControls({0, 0x24, 5, 9, 7, 0, 0}, controls);
    descriptor.push_back(0);  // iProcessing
    descriptor[0] = static_cast<std::uint8_t>(descriptor.size());
    return descriptor;
}

std::shared_ptr<const usb::Device> device(std::shared_ptr<Script> script, Ids ids) {
    return std::make_shared<ScriptedDevice>(std::move(script), std::move(ids));
}

std::shared_ptr<const usb::DeviceRegistry> registry(
    std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices) {
    return std::make_shared<ScriptedRegistry>(std::move(devices));
}

}  // namespace scripted
