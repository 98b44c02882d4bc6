#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/camera_model.h"
#include "usb/usb.h"

namespace simulator {

/// The in-process backend: a bus on which simulated cameras are plugged and unplugged by code. Devices and
/// handles obtained from it may outlive it.
class SimulatedRegistry : public usb::DeviceRegistry {
 public:
    SimulatedRegistry();

    /// Plugs `camera` in at `bus` and `ports`. An unplugged camera may be plugged in again; one that is still
    /// plugged in moves to the new place.
    void plug(std::shared_ptr<CameraModel> camera, std::uint8_t bus, std::vector<std::uint8_t> ports);
    /// Unplugs it: the camera is no longer listed, and open handles of it answer Outcome::disconnected.
    /// The same happens when the camera drops out by itself (CameraModel::unplugAfter()).
    void unplug(const std::shared_ptr<CameraModel> &camera);

    /// Plugs in a device that is no camera: it has no VideoControl interface.
    void plugOther(std::uint16_t vendorId, std::uint16_t productId, std::string name, std::uint8_t bus,
                   std::vector<std::uint8_t> ports);

    /// Until the camera is plugged in anew, open() of its VideoControl interface answers `outcome`:
    /// Outcome::busy for a camera that a driver or program holds, Outcome::denied for one without rights,
    /// Outcome::done to end it.
    void answerOpenWith(const std::shared_ptr<CameraModel> &camera, usb::Outcome outcome);

    /// The same of close(), which then closes nothing.
    void answerCloseWith(const std::shared_ptr<CameraModel> &camera, usb::Outcome outcome);
    /// One request from now on, the next being number 0, does not reach the camera and answers `outcome`;
    /// Outcome::disconnected, as those after it do.
    void answerRequestWith(const std::shared_ptr<CameraModel> &camera, std::size_t number,
                           usb::Outcome outcome);

    /// How many VideoControl interfaces are open.
    [[nodiscard]] int openHandles() const { return *openHandles_; }

    [[nodiscard]] std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices() const override;

    /// One occupied port. Devices and handles share it with the registry.
    struct Port;

 private:
    void insert(std::shared_ptr<Port> port);

    std::vector<std::shared_ptr<Port>> ports_;  // by bus and port path, ascending
    std::shared_ptr<int> openHandles_;
};

}  // namespace simulator
