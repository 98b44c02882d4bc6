#pragma once

#include <chrono>
#include <memory>

#include "simulator/camera_model.h"
#include "simulator/simulated_registry.h"
#include "uvc/uvc_controller.h"

namespace support {

constexpr std::uint8_t kTerminal = 1;
constexpr std::uint8_t kZoomAbs = 0x0B;
constexpr std::uint8_t kPanTiltAbs = 0x0D;
constexpr std::uint8_t kSetCur = 0x01;
constexpr std::uint8_t kGetCur = 0x81;

/// A bus with one simulated camera whose motors run by a clock that stands still, installed as the process's
/// devices as long as this object lives.
class SimulatedCamera {
 public:
    explicit SimulatedCamera(simulator::CameraOptions options = {})
        : camera(std::make_shared<simulator::CameraModel>(std::move(options), [this] { return now; })),
          bus(std::make_shared<simulator::SimulatedRegistry>()) {
        bus->plug(camera, 1, {1});
        UVCController::useDeviceRegistry(bus);
    }
    ~SimulatedCamera() { UVCController::useDeviceRegistry(nullptr); }
    SimulatedCamera(const SimulatedCamera &) = delete;
    SimulatedCamera &operator=(const SimulatedCamera &) = delete;

    [[nodiscard]] int panTiltSets() const { return camera->count(kTerminal, kPanTiltAbs, kSetCur); }
    [[nodiscard]] int zoomSets() const { return camera->count(kTerminal, kZoomAbs, kSetCur); }

    std::chrono::steady_clock::time_point now{};
    std::shared_ptr<simulator::CameraModel> camera;
    std::shared_ptr<simulator::SimulatedRegistry> bus;
};

}  // namespace support
