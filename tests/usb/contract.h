#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/camera_model.h"
#include "usb/usb.h"

/// What every backend promises, run on each of them: a backend brings a `Rig`, a bus of its own kind on which
/// simulated cameras are plugged in.
namespace contract {

using simulator::CameraModel;
using simulator::CameraOptions;
using Camera = std::shared_ptr<CameraModel>;
using Ports = std::vector<std::uint8_t>;

class Rig {
 public:
    virtual ~Rig() = default;

    [[nodiscard]] virtual const usb::DeviceRegistry &registry() const = 0;
    /// Destroys the registry; nothing that came from it may suffer.
    virtual void dropRegistry() = 0;

    virtual void plug(const Camera &camera, std::uint8_t bus, const Ports &ports) = 0;
    virtual void unplug(const Camera &camera) = 0;
    virtual void plugKeyboard(std::uint8_t bus, const Ports &ports) = 0;

    /// Another program or driver holds the camera's VideoControl interface from now on.
    virtual void holdElsewhere(const Camera &camera) = 0;
    /// Runs `action` as somebody who may not open the camera.
    virtual void withoutRights(const Camera &camera, const std::function<void()> &action) = 0;

    /// Interfaces that are open at present, as the bus sees it.
    [[nodiscard]] virtual int openInterfaces() const = 0;
};

[[nodiscard]] inline usb::SetupPacket getRequest(std::uint8_t request, std::uint8_t unit,
                                                 std::uint8_t selector, std::uint16_t length) {
    return {0xA1, request, static_cast<std::uint16_t>(selector << 8), static_cast<std::uint16_t>(unit << 8),
            length};
}

[[nodiscard]] inline usb::SetupPacket setRequest(std::uint8_t unit, std::uint8_t selector,
                                                 std::uint16_t length) {
    return {0x21, 0x01, static_cast<std::uint16_t>(selector << 8), static_cast<std::uint16_t>(unit << 8),
            length};
}

inline const usb::SetupPacket kGetZoom = getRequest(0x81, 1, 0x0B, 2);
inline const usb::SetupPacket kSetZoom = setRequest(1, 0x0B, 2);

/// The VideoControl interfaces on the bus, in the registry's order.
[[nodiscard]] inline std::vector<std::unique_ptr<usb::VideoControl>> interfacesOf(const Rig &rig) {
    std::vector<std::unique_ptr<usb::VideoControl>> interfaces;
    const auto devices = rig.registry().devices();
    if (!devices) return interfaces;
    for (const auto &device : *devices)
        if (auto interface = device->videoControl()) interfaces.push_back(std::move(interface));
    return interfaces;
}

[[nodiscard]] inline std::shared_ptr<const usb::Device> deviceAt(const Rig &rig, std::uint32_t locationId) {
    const auto devices = rig.registry().devices();
    if (!devices) return nullptr;
    for (const auto &device : *devices)
        if (device->locationId() == locationId) return device;
    return nullptr;
}

template <typename RigType>
class RegistryContract : public testing::Test {
 protected:
    /// Plugs the camera in, alone, and gives its interface, closed.
    std::unique_ptr<usb::VideoControl> onlyInterface() {
        rig.plug(camera, 1, {2});
        auto interfaces = interfacesOf(rig);
        return interfaces.size() == 1 ? std::move(interfaces.front()) : nullptr;
    }

    RigType rig;
    Camera camera = std::make_shared<CameraModel>();
    std::array<std::uint8_t, 2> zoom{};
};

TYPED_TEST_SUITE_P(RegistryContract);

TYPED_TEST_P(RegistryContract, ListsByBusThenPortNumberWhateverTheOrderOfPlugging) {
    const auto plugAt = [this](std::uint8_t bus, const Ports &ports) {
        this->rig.plug(std::make_shared<CameraModel>(), bus, ports);
    };
    plugAt(1, {10});
    plugAt(2, {1});
    plugAt(1, {2, 1});
    plugAt(1, {2, 4});

    const auto devices = this->rig.registry().devices();
    ASSERT_TRUE(devices.has_value());
    std::vector<std::uint32_t> cameras;
    for (const auto &device : *devices)
        if (device->videoControl()) cameras.push_back(device->locationId().value_or(0));
    EXPECT_THAT(cameras, testing::ElementsAre(0x01210000u, 0x01240000u, 0x01A00000u, 0x02100000u));
}

TYPED_TEST_P(RegistryContract, TellsIdsAndNameOfEachDeviceAndFindsNoCameraInAKeyboard) {
    CameraOptions options;
    options.record.vendorId = 0x1234;
    options.record.productId = 0xFEDC;
    options.productName = "Otra cámara";
    this->rig.plug(std::make_shared<CameraModel>(options), 3, {1});
    this->rig.plugKeyboard(3, {2});

    const auto other = deviceAt(this->rig, 0x03100000);
    const auto keyboard = deviceAt(this->rig, 0x03200000);
    ASSERT_TRUE(other && keyboard);
    EXPECT_EQ(other->vendorId(), 0x1234);
    EXPECT_EQ(other->productId(), 0xFEDC);
    EXPECT_EQ(other->registryName(), "Otra cámara");
    EXPECT_EQ(keyboard->vendorId(), 0x0627);
    EXPECT_EQ(keyboard->videoControl(), nullptr);
}

TYPED_TEST_P(RegistryContract, GivesTheClassDescriptorsAsTheDeviceHasThem) {
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->interfaceNumber(), this->camera->videoControlInterface());
    EXPECT_THAT(control->classDescriptors(),
                testing::ElementsAreArray(this->camera->videoControlDescriptors()));
}

TYPED_TEST_P(RegistryContract, OpensOnceClosesOnceAndLeavesNothingOpen) {
    auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(this->rig.openInterfaces(), 0);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(control->open(), usb::Outcome::done);
        EXPECT_EQ(control->open(), usb::Outcome::done);
        EXPECT_EQ(this->rig.openInterfaces(), 1);
        EXPECT_EQ(control->close(), usb::Outcome::done);
        EXPECT_EQ(this->rig.openInterfaces(), 0);
        EXPECT_EQ(control->close(), usb::Outcome::done);
    }
    EXPECT_EQ(control->open(), usb::Outcome::done);
    control.reset();
    EXPECT_EQ(this->rig.openInterfaces(), 0);
}

TYPED_TEST_P(RegistryContract, SendsNothingWhileClosedNorWithALengthThatIsNotTheData) {
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::failed);
    ASSERT_EQ(control->open(), usb::Outcome::done);
    EXPECT_EQ(control->controlRequest(getRequest(0x81, 1, 0x0B, 3), this->zoom), usb::Outcome::failed);
    ASSERT_EQ(control->close(), usb::Outcome::done);
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::failed);
    EXPECT_TRUE(this->camera->transfers().empty());
}

TYPED_TEST_P(RegistryContract, CarriesSettingsToTheCameraAndAnswersBack) {
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    ASSERT_EQ(control->open(), usb::Outcome::done);

    // pan -36000 (-10 degrees), tilt 18000 (5 degrees)
    std::array<std::uint8_t, 8> sent{0x60, 0x73, 0xFF, 0xFF, 0x50, 0x46, 0x00, 0x00};
    const auto set = setRequest(1, 0x0D, 8);
    EXPECT_EQ(control->controlRequest(set, sent), usb::Outcome::done);
    EXPECT_EQ(this->camera->target().pan, -36000);
    EXPECT_EQ(this->camera->target().tilt, 18000);

    std::array<std::uint8_t, 8> answer{};
    EXPECT_EQ(control->controlRequest(getRequest(0x81, 1, 0x0D, 8), answer), usb::Outcome::done);
    EXPECT_EQ(answer, sent);

    // A backend may ask the camera for its limits first, but moves it once.
    std::vector<simulator::Transfer> sets;
    for (const simulator::Transfer &transfer : this->camera->transfers())
        if (transfer.setup.request == set.request) sets.push_back(transfer);
    ASSERT_EQ(sets.size(), 1u);
    EXPECT_EQ(sets.front().setup, set);
    EXPECT_THAT(sets.front().data, testing::ElementsAreArray(sent));
}

TYPED_TEST_P(RegistryContract, TellsAStallAsRefusedAndGoesOn) {
    this->camera->refuse({1, 0x0B, 0x82});
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    ASSERT_EQ(control->open(), usb::Outcome::done);
    EXPECT_EQ(control->controlRequest(getRequest(0x82, 1, 0x0B, 2), this->zoom), usb::Outcome::refused);
    this->camera->refuse({1, 0x0B, 0x82}, false);
    this->zoom = {0xE9, 0x03};  // 1001: one above the limit
    EXPECT_EQ(control->controlRequest(kSetZoom, this->zoom), usb::Outcome::refused);
    this->zoom = {0xE8, 0x03};
    this->camera->refuse({1, 0x0B, 0x01});
    EXPECT_EQ(control->controlRequest(kSetZoom, this->zoom), usb::Outcome::refused);
    this->camera->refuse({1, 0x0B, 0x01}, false);
    this->zoom = {0xE8, 0x03};
    EXPECT_EQ(control->controlRequest(kSetZoom, this->zoom), usb::Outcome::done);
    EXPECT_EQ(this->camera->target().zoom, 1000);
}

TYPED_TEST_P(RegistryContract, SurvivesTheCameraBeingPulledOutAndPutBack) {
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    ASSERT_EQ(control->open(), usb::Outcome::done);
    this->rig.unplug(this->camera);

    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::disconnected);
    EXPECT_EQ(control->close(), usb::Outcome::done);
    EXPECT_EQ(control->open(), usb::Outcome::disconnected);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_TRUE(interfacesOf(this->rig).empty());

    const auto again = this->onlyInterface();
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->open(), usb::Outcome::done);
    EXPECT_EQ(again->controlRequest(kGetZoom, this->zoom), usb::Outcome::done);
    EXPECT_EQ(control->open(), usb::Outcome::disconnected);
}

TYPED_TEST_P(RegistryContract, SurvivesTheCameraDroppingOutBetweenTwoRequests) {
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    ASSERT_EQ(control->open(), usb::Outcome::done);
    this->camera->unplugAfter(1);
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::done);
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::disconnected);
}

TYPED_TEST_P(RegistryContract, LeavesAnInterfaceToWhoeverHoldsIt) {
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    this->rig.holdElsewhere(this->camera);
    EXPECT_EQ(control->open(), usb::Outcome::busy);
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::failed);
    EXPECT_EQ(this->rig.openInterfaces(), 0);
    EXPECT_TRUE(this->camera->transfers().empty());
}

TYPED_TEST_P(RegistryContract, ListsACameraThatThisUserMayNotOpen) {
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    this->rig.withoutRights(this->camera, [&] { EXPECT_EQ(control->open(), usb::Outcome::denied); });
    EXPECT_EQ(control->open(), usb::Outcome::done);
    EXPECT_EQ(control->close(), usb::Outcome::done);
    EXPECT_EQ(this->rig.openInterfaces(), 0);
}

TYPED_TEST_P(RegistryContract, GivesUpOnACameraThatDoesNotAnswer) {
    const auto control = this->onlyInterface();
    ASSERT_NE(control, nullptr);
    ASSERT_EQ(control->open(), usb::Outcome::done);
    this->camera->setAnswerDelay(std::chrono::milliseconds(usb::kRequestTimeout + 1));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::timedOut);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2 * usb::kRequestTimeout));

    this->camera->setAnswerDelay(std::chrono::milliseconds(0));
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::done);
}

TYPED_TEST_P(RegistryContract, KeepsDevicesAndInterfacesUsableWithoutTheRegistry) {
    this->rig.plug(this->camera, 1, {2});
    const auto device = deviceAt(this->rig, 0x01200000);
    ASSERT_NE(device, nullptr);
    this->rig.dropRegistry();

    const auto control = device->videoControl();
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->open(), usb::Outcome::done);
    EXPECT_EQ(control->controlRequest(kGetZoom, this->zoom), usb::Outcome::done);
}

REGISTER_TYPED_TEST_SUITE_P(RegistryContract, ListsByBusThenPortNumberWhateverTheOrderOfPlugging,
                            TellsIdsAndNameOfEachDeviceAndFindsNoCameraInAKeyboard,
                            GivesTheClassDescriptorsAsTheDeviceHasThem,
                            OpensOnceClosesOnceAndLeavesNothingOpen,
                            SendsNothingWhileClosedNorWithALengthThatIsNotTheData,
                            CarriesSettingsToTheCameraAndAnswersBack, TellsAStallAsRefusedAndGoesOn,
                            SurvivesTheCameraBeingPulledOutAndPutBack,
                            SurvivesTheCameraDroppingOutBetweenTwoRequests, LeavesAnInterfaceToWhoeverHoldsIt,
                            ListsACameraThatThisUserMayNotOpen, GivesUpOnACameraThatDoesNotAnswer,
                            KeepsDevicesAndInterfacesUsableWithoutTheRegistry);

}  // namespace contract
