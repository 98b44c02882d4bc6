#include "simulator/simulated_registry.h"

#include <algorithm>
#include <thread>
#include <tuple>
#include <utility>

namespace simulator {

struct SimulatedRegistry::Socket {
    std::uint8_t bus = 0;
    std::vector<std::uint8_t> ports;
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::string name;
    std::shared_ptr<CameraModel> camera;  // null: a device that is no camera
    usb::Outcome openAnswer = usb::Outcome::done;
    bool unplugged = false;

    [[nodiscard]] bool isGone() const { return unplugged || (camera && camera->isUnplugged()); }
};

namespace {

using Socket = SimulatedRegistry::Socket;
using usb::Outcome;

class SimulatedVideoControl : public usb::VideoControl {
 public:
    SimulatedVideoControl(std::shared_ptr<const Socket> socket, std::shared_ptr<int> openHandles)
        : socket_(std::move(socket)),
          openHandles_(std::move(openHandles)),
          descriptors_(socket_->camera->videoControlDescriptors()) {}
    ~SimulatedVideoControl() override { giveBack(); }
    SimulatedVideoControl(const SimulatedVideoControl &) = delete;
    SimulatedVideoControl &operator=(const SimulatedVideoControl &) = delete;

    [[nodiscard]] std::uint8_t interfaceNumber() const override {
        return socket_->camera->videoControlInterface();
    }
    [[nodiscard]] std::span<const std::uint8_t> classDescriptors() const override { return descriptors_; }

    [[nodiscard]] Outcome open() override {
        if (open_) return Outcome::done;
        if (socket_->isGone()) return Outcome::disconnected;
        if (socket_->openAnswer != Outcome::done) return socket_->openAnswer;
        open_ = true;
        ++*openHandles_;
        return Outcome::done;
    }

    [[nodiscard]] Outcome close() override {
        giveBack();
        return Outcome::done;
    }

    [[nodiscard]] Outcome controlRequest(const usb::SetupPacket &setup,
                                         std::span<std::uint8_t> data) override {
        if (!open_ || setup.length != data.size()) return Outcome::failed;
        if (socket_->isGone()) return Outcome::disconnected;

        CameraModel &camera = *socket_->camera;
        // A request given up on does not reach the camera at all; waiting for it would only slow down the
        // tests.
        if (camera.answerDelay() > std::chrono::milliseconds(usb::kRequestTimeout)) return Outcome::timedOut;
        if (camera.answerDelay().count() > 0) std::this_thread::sleep_for(camera.answerDelay());
        if (!camera.controlRequest(setup, data)) return Outcome::refused;
        constexpr std::uint8_t kDeviceToHost = 0x80;
        const bool isAnswer = (setup.requestType & kDeviceToHost) != 0;
        return isAnswer && camera.answeredBytes(data.size()) < data.size() ? Outcome::failed : Outcome::done;
    }

 private:
    void giveBack() {
        if (open_) --*openHandles_;
        open_ = false;
    }

    std::shared_ptr<const Socket> socket_;
    std::shared_ptr<int> openHandles_;
    std::vector<std::uint8_t> descriptors_;
    bool open_ = false;
};

class SimulatedDevice : public usb::Device {
 public:
    SimulatedDevice(std::shared_ptr<const Socket> socket, std::shared_ptr<int> openHandles)
        : socket_(std::move(socket)), openHandles_(std::move(openHandles)) {}

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const override { return socket_->vendorId; }
    [[nodiscard]] std::optional<std::uint16_t> productId() const override { return socket_->productId; }
    [[nodiscard]] std::optional<std::uint32_t> locationId() const override {
        return usb::locationId(socket_->bus, socket_->ports);
    }
    [[nodiscard]] std::optional<std::string> registryName() const override {
        if (socket_->name.empty()) return std::nullopt;
        return socket_->name;
    }

    [[nodiscard]] std::unique_ptr<usb::VideoControl> videoControl() const override {
        if (!socket_->camera) return nullptr;
        return std::make_unique<SimulatedVideoControl>(socket_, openHandles_);
    }

 private:
    std::shared_ptr<const Socket> socket_;
    std::shared_ptr<int> openHandles_;
};

}  // namespace

SimulatedRegistry::SimulatedRegistry() : openHandles_(std::make_shared<int>(0)) {}

void SimulatedRegistry::plug(std::shared_ptr<CameraModel> camera, std::uint8_t bus,
                             std::vector<std::uint8_t> ports) {
    unplug(camera);
    camera->plugIn();

    auto socket = std::make_shared<Socket>();
    socket->bus = bus;
    socket->ports = std::move(ports);
    socket->vendorId = camera->options().vendorId;
    socket->productId = camera->options().productId;
    socket->name = camera->options().productName;
    socket->camera = std::move(camera);
    insert(std::move(socket));
}

void SimulatedRegistry::unplug(const std::shared_ptr<CameraModel> &camera) {
    std::erase_if(sockets_, [&](const std::shared_ptr<Socket> &socket) {
        if (socket->camera != camera) return false;
        socket->unplugged = true;
        return true;
    });
}

void SimulatedRegistry::plugOther(std::uint16_t vendorId, std::uint16_t productId, std::string name,
                                  std::uint8_t bus, std::vector<std::uint8_t> ports) {
    auto socket = std::make_shared<Socket>();
    socket->bus = bus;
    socket->ports = std::move(ports);
    socket->vendorId = vendorId;
    socket->productId = productId;
    socket->name = std::move(name);
    insert(std::move(socket));
}

void SimulatedRegistry::answerOpenWith(const std::shared_ptr<CameraModel> &camera, usb::Outcome outcome) {
    for (const std::shared_ptr<Socket> &socket : sockets_)
        if (socket->camera == camera) socket->openAnswer = outcome;
}

std::optional<std::vector<std::shared_ptr<const usb::Device>>> SimulatedRegistry::devices() const {
    std::vector<std::shared_ptr<const usb::Device>> present;
    for (const std::shared_ptr<Socket> &socket : sockets_)
        if (!socket->isGone()) present.push_back(std::make_shared<SimulatedDevice>(socket, openHandles_));
    return present;
}

void SimulatedRegistry::insert(std::shared_ptr<Socket> socket) {
    const auto behind = std::ranges::upper_bound(sockets_, socket, [](const auto &a, const auto &b) {
        return std::tie(a->bus, a->ports) < std::tie(b->bus, b->ports);
    });
    sockets_.insert(behind, std::move(socket));
}

}  // namespace simulator
