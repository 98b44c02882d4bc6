#include "simulator/simulated_registry.h"

#include <algorithm>
#include <thread>
#include <tuple>
#include <utility>

namespace simulator {

struct SimulatedRegistry::Port {
    std::uint8_t bus = 0;
    std::vector<std::uint8_t> path;  // port numbers from the root hub on
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::string name;
    std::shared_ptr<CameraModel> camera;  // null: a device that is no camera
    usb::Outcome openAnswer = usb::Outcome::done;
    usb::Outcome closeAnswer = usb::Outcome::done;
    std::size_t requests = 0;  // since it was plugged in
    std::size_t brokenRequest = ~std::size_t{0};
    usb::Outcome brokenAnswer = usb::Outcome::done;
    bool unplugged = false;

    [[nodiscard]] bool isGone() const { return unplugged || (camera && camera->isUnplugged()); }
};

namespace {

using Port = SimulatedRegistry::Port;
using usb::Outcome;

class SimulatedVideoControl : public usb::VideoControl {
 public:
    SimulatedVideoControl(std::shared_ptr<Port> port, std::shared_ptr<int> openHandles)
        : port_(std::move(port)),
          openHandles_(std::move(openHandles)),
          descriptors_(port_->camera->videoControlDescriptors()) {}
    ~SimulatedVideoControl() override { giveBack(); }
    SimulatedVideoControl(const SimulatedVideoControl &) = delete;
    SimulatedVideoControl &operator=(const SimulatedVideoControl &) = delete;

    [[nodiscard]] std::uint8_t interfaceNumber() const override {
        return port_->camera->videoControlInterface();
    }
    [[nodiscard]] std::span<const std::uint8_t> classDescriptors() const override { return descriptors_; }

    [[nodiscard]] Outcome open() override {
        if (open_) return Outcome::done;
        if (port_->isGone()) return Outcome::disconnected;
        if (port_->openAnswer != Outcome::done) return port_->openAnswer;
        open_ = true;
        ++*openHandles_;
        return Outcome::done;
    }

    [[nodiscard]] Outcome close() override {
        if (port_->closeAnswer != Outcome::done) return port_->closeAnswer;
        giveBack();
        return Outcome::done;
    }

    [[nodiscard]] Outcome controlRequest(const usb::SetupPacket &setup,
                                         std::span<std::uint8_t> data) override {
        if (!open_ || setup.length != data.size()) return Outcome::failed;
        if (port_->isGone()) return Outcome::disconnected;
        const std::size_t number = port_->requests++;
        const bool gone = port_->brokenAnswer == Outcome::disconnected && number > port_->brokenRequest;
        if (number == port_->brokenRequest || gone) return port_->brokenAnswer;

        CameraModel &camera = *port_->camera;
        // A request that times out does not reach the camera at all. Waiting for it would only slow down
        // the tests.
        const std::chrono::milliseconds delay = camera.answerDelay(setup);
        if (delay > std::chrono::milliseconds(usb::kRequestTimeout)) return Outcome::timedOut;
        if (delay.count() > 0) std::this_thread::sleep_for(delay);
        const std::optional<std::size_t> transferred = camera.controlRequest(setup, data);
        if (!transferred) return port_->isGone() ? Outcome::disconnected : Outcome::refused;
        return *transferred < data.size() ? Outcome::failed : Outcome::done;
    }

 private:
    void giveBack() {
        if (open_) --*openHandles_;
        open_ = false;
    }

    std::shared_ptr<Port> port_;
    std::shared_ptr<int> openHandles_;
    std::vector<std::uint8_t> descriptors_;
    bool open_ = false;
};

class SimulatedDevice : public usb::Device {
 public:
    SimulatedDevice(std::shared_ptr<Port> port, std::shared_ptr<int> openHandles)
        : port_(std::move(port)), openHandles_(std::move(openHandles)) {}

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const override { return port_->vendorId; }
    [[nodiscard]] std::optional<std::uint16_t> productId() const override { return port_->productId; }
    [[nodiscard]] std::optional<std::uint32_t> locationId() const override {
        return usb::locationId(port_->bus, port_->path);
    }
    [[nodiscard]] std::optional<std::string> registryName() const override {
        if (port_->name.empty()) return std::nullopt;
        return port_->name;
    }

    [[nodiscard]] std::unique_ptr<usb::VideoControl> videoControl() const override {
        if (!port_->camera) return nullptr;
        return std::make_unique<SimulatedVideoControl>(port_, openHandles_);
    }

 private:
    std::shared_ptr<Port> port_;
    std::shared_ptr<int> openHandles_;
};

}  // namespace

SimulatedRegistry::SimulatedRegistry() : openHandles_(std::make_shared<int>(0)) {}

void SimulatedRegistry::plug(std::shared_ptr<CameraModel> camera, std::uint8_t bus,
                             std::vector<std::uint8_t> ports) {
    unplug(camera);
    camera->plugIn();

    auto port = std::make_shared<Port>();
    port->bus = bus;
    port->path = std::move(ports);
    port->vendorId = camera->options().record.vendorId;
    port->productId = camera->options().record.productId;
    port->name = camera->options().productName;
    port->camera = std::move(camera);
    insert(std::move(port));
}

void SimulatedRegistry::unplug(const std::shared_ptr<CameraModel> &camera) {
    std::erase_if(ports_, [&](const std::shared_ptr<Port> &port) {
        if (port->camera != camera) return false;
        port->unplugged = true;
        return true;
    });
}

void SimulatedRegistry::plugOther(std::uint16_t vendorId, std::uint16_t productId, std::string name,
                                  std::uint8_t bus, std::vector<std::uint8_t> ports) {
    auto port = std::make_shared<Port>();
    port->bus = bus;
    port->path = std::move(ports);
    port->vendorId = vendorId;
    port->productId = productId;
    port->name = std::move(name);
    insert(std::move(port));
}

void SimulatedRegistry::answerOpenWith(const std::shared_ptr<CameraModel> &camera, usb::Outcome outcome) {
    for (const std::shared_ptr<Port> &port : ports_)
        if (port->camera == camera) port->openAnswer = outcome;
}

void SimulatedRegistry::answerCloseWith(const std::shared_ptr<CameraModel> &camera, usb::Outcome outcome) {
    for (const std::shared_ptr<Port> &port : ports_)
        if (port->camera == camera) port->closeAnswer = outcome;
}

void SimulatedRegistry::answerRequestWith(const std::shared_ptr<CameraModel> &camera, std::size_t number,
                                          usb::Outcome outcome) {
    for (const std::shared_ptr<Port> &port : ports_) {
        if (port->camera != camera) continue;
        port->brokenRequest = port->requests + number;
        port->brokenAnswer = outcome;
    }
}

std::optional<std::vector<std::shared_ptr<const usb::Device>>> SimulatedRegistry::devices() const {
    std::vector<std::shared_ptr<const usb::Device>> present;
    for (const std::shared_ptr<Port> &port : ports_)
        if (!port->isGone()) present.push_back(std::make_shared<SimulatedDevice>(port, openHandles_));
    return present;
}

void SimulatedRegistry::insert(std::shared_ptr<Port> port) {
    const auto behind = std::ranges::upper_bound(ports_, port, [](const auto &a, const auto &b) {
        return std::tie(a->bus, a->path) < std::tie(b->bus, b->path);
    });
    ports_.insert(behind, std::move(port));
}

}  // namespace simulator
