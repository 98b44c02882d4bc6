#include "simulator/simulated_registry.h"

#include "usb/contract.h"

namespace {

using contract::Camera;
using contract::Ports;

class SimulatedRig : public contract::Rig {
 public:
    [[nodiscard]] const usb::DeviceRegistry &registry() const override { return *registry_; }
    void dropRegistry() override { registry_.reset(); }

    void plug(const Camera &camera, std::uint8_t bus, const Ports &ports) override {
        registry_->plug(camera, bus, ports);
    }
    void unplug(const Camera &camera) override { registry_->unplug(camera); }
    void plugKeyboard(std::uint8_t bus, const Ports &ports) override {
        registry_->plugOther(0x0627, 0x0001, "Teclado", bus, ports);
    }

    void holdElsewhere(const Camera &camera) override {
        registry_->answerOpenWith(camera, usb::Outcome::busy);
    }
    void withoutRights(const Camera &camera, const std::function<void()> &action) override {
        registry_->answerOpenWith(camera, usb::Outcome::denied);
        action();
        registry_->answerOpenWith(camera, usb::Outcome::done);
    }

    [[nodiscard]] int openInterfaces() const override { return registry_ ? registry_->openHandles() : 0; }

 private:
    std::unique_ptr<simulator::SimulatedRegistry> registry_ =
        std::make_unique<simulator::SimulatedRegistry>();
};

TEST(SimulatedRegistry, TakesAnAnswerShorterThanAskedForAFailure) {
    contract::CameraOptions options;
    options.shortAnswers = true;
    SimulatedRig rig;
    rig.plug(std::make_shared<contract::CameraModel>(options), 1, {1});
    const auto control = rig.registry().devices()->front()->videoControl();
    ASSERT_EQ(control->open(), usb::Outcome::done);
    std::array<std::uint8_t, 2> zoom{0x2C, 0x01};
    EXPECT_EQ(control->controlRequest(contract::kGetZoom, zoom), usb::Outcome::failed);
    zoom = {0x2C, 0x01};
    EXPECT_EQ(control->controlRequest(contract::kSetZoom, zoom), usb::Outcome::done);
}

}  // namespace

namespace contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, RegistryContract, SimulatedRig);
}  // namespace contract
