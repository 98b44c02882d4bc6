// What every backend promises, on the simulated bus. The kernel suite holds the real ones to the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <memory>
#include <vector>

#include "simulator/simulated_registry.h"

namespace {

using simulator::CameraModel;
using usb::Outcome;

constexpr usb::SetupPacket kGetZoom{0xA1, 0x81, 0x0B00, 0x0100, 2};
constexpr usb::SetupPacket kSetZoom{0x21, 0x01, 0x0B00, 0x0100, 2};

class RegistryContract : public testing::Test {
 protected:
    /// Plugs the camera in, alone, and gives its interface, closed.
    std::unique_ptr<usb::VideoControl> onlyInterface() {
        bus->plug(camera, 1, {2});
        return bus->devices()->front()->videoControl();
    }
    Outcome request(usb::VideoControl &control, const usb::SetupPacket &setup) {
        return control.controlRequest(setup, zoom);
    }

    std::unique_ptr<simulator::SimulatedRegistry> bus = std::make_unique<simulator::SimulatedRegistry>();
    std::shared_ptr<CameraModel> camera = std::make_shared<CameraModel>();
    std::array<std::uint8_t, 2> zoom{};
};

TEST_F(RegistryContract, ListsByBusThenPortNumberAndTellsCamerasFromOtherDevices) {
    simulator::CameraOptions options;
    options.record.vendorId = 0x1234;
    options.productName = "Otra cámara";
    bus->plug(camera, 1, {10});
    bus->plugOther(0x0627, 0x0001, "Teclado", 2, {1});
    bus->plug(std::make_shared<CameraModel>(options), 1, {2, 1});
    bus->plug(std::make_shared<CameraModel>(), 1, {2, 4});

    std::vector<std::uint32_t> places;
    const auto devices = *bus->devices();
    for (const auto &device : devices) places.push_back(device->locationId().value_or(0));
    EXPECT_THAT(places, testing::ElementsAre(0x01210000u, 0x01240000u, 0x01A00000u, 0x02100000u));
    EXPECT_EQ(devices[0]->vendorId(), 0x1234);
    EXPECT_EQ(devices[0]->registryName(), "Otra cámara");
    const auto control = devices[2]->videoControl();
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->interfaceNumber(), camera->videoControlInterface());
    EXPECT_THAT(control->classDescriptors(), testing::ElementsAreArray(camera->videoControlDescriptors()));
    EXPECT_EQ(devices[3]->videoControl(), nullptr);
}

TEST_F(RegistryContract, OpensOnceClosesOnceLeavesNothingOpenAndSendsNothingWhileClosed) {
    auto control = onlyInterface();
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(request(*control, kGetZoom), Outcome::failed);
        EXPECT_EQ(control->open(), Outcome::done);
        EXPECT_EQ(control->open(), Outcome::done);
        EXPECT_EQ(bus->openHandles(), 1);
        EXPECT_EQ(request(*control, {0xA1, 0x81, 0x0B00, 0x0100, 3}), Outcome::failed) << "not the data";
        EXPECT_EQ(control->close(), Outcome::done);
        EXPECT_EQ(bus->openHandles(), 0);
        EXPECT_EQ(control->close(), Outcome::done);
    }
    EXPECT_TRUE(camera->transfers().empty());
    EXPECT_EQ(control->open(), Outcome::done);
    control.reset();
    EXPECT_EQ(bus->openHandles(), 0);
}

TEST_F(RegistryContract, CarriesSettingsAndAnswersAndTellsAStallAsRefused) {
    const auto control = onlyInterface();
    ASSERT_EQ(control->open(), Outcome::done);
    zoom = {0xE9, 0x03};  // 1001: one above the limit
    EXPECT_EQ(request(*control, kSetZoom), Outcome::refused);
    zoom = {0xE8, 0x03};
    EXPECT_EQ(request(*control, kSetZoom), Outcome::done);
    EXPECT_EQ(camera->target().zoom, 1000);
    camera->refuse({1, 0x0B, kGetZoom.request});
    EXPECT_EQ(request(*control, kGetZoom), Outcome::refused);
    camera->refuse({1, 0x0B, kGetZoom.request}, false);
    zoom = {};
    EXPECT_EQ(request(*control, kGetZoom), Outcome::done);
    EXPECT_THAT(zoom, testing::ElementsAre(0xE8, 0x03));
}

TEST_F(RegistryContract, SurvivesTheCameraDroppingOutAndComingBack) {
    const auto control = onlyInterface();
    ASSERT_EQ(control->open(), Outcome::done);
    camera->unplugAfter(1);
    EXPECT_EQ(request(*control, kGetZoom), Outcome::done);
    EXPECT_EQ(request(*control, kGetZoom), Outcome::disconnected);
    EXPECT_EQ(control->close(), Outcome::done);
    EXPECT_EQ(control->open(), Outcome::disconnected);
    EXPECT_TRUE(bus->devices()->empty());

    const auto again = onlyInterface();
    EXPECT_EQ(again->open(), Outcome::done);
    EXPECT_EQ(request(*again, kGetZoom), Outcome::done);
    EXPECT_EQ(control->open(), Outcome::disconnected);
}

TEST_F(RegistryContract, TellsWhyACameraDoesNotOpen) {
    const auto control = onlyInterface();
    for (const Outcome outcome : {Outcome::busy, Outcome::denied}) {
        bus->answerOpenWith(camera, outcome);
        EXPECT_EQ(control->open(), outcome);
        EXPECT_EQ(request(*control, kGetZoom), Outcome::failed);
        EXPECT_EQ(bus->openHandles(), 0);
    }
    EXPECT_TRUE(camera->transfers().empty());
}

TEST_F(RegistryContract, GivesUpOnACameraThatDoesNotAnswerInTimeOrInFull) {
    const auto control = onlyInterface();
    ASSERT_EQ(control->open(), Outcome::done);
    camera->setAnswerDelay(std::chrono::milliseconds(usb::kRequestTimeout + 1));
    EXPECT_EQ(request(*control, kGetZoom), Outcome::timedOut);
    camera->setAnswerDelay(std::chrono::milliseconds(0));
    EXPECT_EQ(request(*control, kGetZoom), Outcome::done);

    simulator::CameraOptions options;
    options.shortAnswers = true;
    bus->unplug(camera);
    camera = std::make_shared<CameraModel>(options);
    const auto shortControl = onlyInterface();
    ASSERT_EQ(shortControl->open(), Outcome::done);
    EXPECT_EQ(request(*shortControl, kGetZoom), Outcome::failed);
    EXPECT_EQ(request(*shortControl, kSetZoom), Outcome::done);
}

TEST_F(RegistryContract, KeepsDevicesAndInterfacesUsableWithoutTheRegistry) {
    bus->plug(camera, 1, {2});
    const auto device = bus->devices()->front();
    bus.reset();
    const auto control = device->videoControl();
    EXPECT_EQ(control->open(), Outcome::done);
    EXPECT_EQ(request(*control, kGetZoom), Outcome::done);
}

}  // namespace
