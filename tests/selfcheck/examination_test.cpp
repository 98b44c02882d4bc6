// What a check asks, what it leaves alone, and when it stops asking.
#include "selfcheck/examination.h"

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <thread>

#include "selfcheck/watched_device.h"
#include "selfcheck_bench.h"

namespace {

using ExaminationTest = SelfcheckBench;
using OrderTrialTest = SelfcheckBench;
using selfcheck::WatchedDevice;
using Stage = selfcheck::OrderFacts::Stage;

constexpr std::uint8_t kGet = 0xA1;

TEST_F(ExaminationTest, OnlyGetsReachTheCameraAtMostTwoAStepAndNothingStaysOpen) {
    const auto camera = plug();
    selfcheck::Examination check(bus_, inspector());
    for (bool more = true; more;) {
        const std::size_t before = camera->transfers().size();
        more = check.step();
        EXPECT_LE(camera->transfers().size() - before, 2U);
    }
    ASSERT_EQ(camera->transfers().size(), 12U);
    EXPECT_EQ(camera->transfers().front().setup.request, 0x81) << "what shows a slow camera comes first";
    for (const auto &transfer : camera->transfers()) {
        EXPECT_EQ(transfer.setup.requestType, kGet);
        EXPECT_NE(transfer.setup.request, 0x01);
    }
    EXPECT_EQ(bus_->openHandles(), 0);
    EXPECT_FALSE(check.facts().givenUp);
    EXPECT_EQ(inspected_, 0x01100000U);
}

TEST_F(ExaminationTest, AWatchedDeviceDoesNotEvenForwardASet) {
    const auto camera = plug();
    const auto watched = std::make_shared<WatchedDevice>(bus_->devices()->front());
    const auto interface = watched->videoControl();
    ASSERT_EQ(interface->open(), usb::Outcome::done);
    std::vector<std::uint8_t> zoom{1, 0};
    EXPECT_EQ(interface->controlRequest({0x21, 0x01, 0x0B00, 0x0100, 2}, zoom), usb::Outcome::failed);
    EXPECT_EQ(interface->controlRequest({kGet, 0x81, 0x0B00, 0x0100, 2}, zoom), usb::Outcome::done);
    ASSERT_EQ(camera->transfers().size(), 1U);
    EXPECT_EQ(camera->transfers().front().setup.requestType, kGet);
}

/// A camera that answers the first requests and then falls silent, and counts how often it was asked.
struct SilentDevice : usb::Device {
    struct Interface : usb::VideoControl {
        explicit Interface(SilentDevice &device) : device_(device) {}
        std::uint8_t interfaceNumber() const override { return 0; }
        std::span<const std::uint8_t> classDescriptors() const override { return device_.descriptors; }
        usb::Outcome open() override { return usb::Outcome::done; }
        usb::Outcome close() override { return usb::Outcome::done; }
        usb::Outcome controlRequest(const usb::SetupPacket &setup, std::span<std::uint8_t> data) override {
            ++device_.asked;
            if (device_.delayed == setup.request) std::this_thread::sleep_for(device_.delay);
            std::ranges::fill(data, std::uint8_t{1});
            return device_.asked <= device_.answers ? usb::Outcome::done : device_.afterwards;
        }
        SilentDevice &device_;
    };
    std::optional<std::uint16_t> vendorId() const override { return model::kRecords.front().vendorId; }
    std::optional<std::uint16_t> productId() const override { return model::kRecords.front().productId; }
    std::optional<std::uint32_t> locationId() const override { return 0x01100000; }
    std::optional<std::string> registryName() const override { return std::nullopt; }
    std::unique_ptr<usb::VideoControl> videoControl() const override {
        return std::make_unique<Interface>(const_cast<SilentDevice &>(*this));
    }

    std::vector<std::uint8_t> descriptors = simulator::CameraModel().videoControlDescriptors();
    int answers = 0;
    usb::Outcome afterwards = usb::Outcome::timedOut;
    int asked = 0;
    std::uint8_t delayed = 0x82;  // the request that the delay is for
    std::chrono::milliseconds delay{0};
};

struct OneDevice : usb::DeviceRegistry {
    std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices() const override {
        return std::vector<std::shared_ptr<const usb::Device>>{device};
    }
    std::shared_ptr<SilentDevice> device = std::make_shared<SilentDevice>();
};

TEST_F(ExaminationTest, ADeadCameraIsNotAskedAgain) {
    for (const auto outcome : {usb::Outcome::timedOut, usb::Outcome::disconnected}) {
        for (const int answers : {0, 3, 8}) {
            const auto registry = std::make_shared<OneDevice>();
            registry->device->answers = answers;
            registry->device->afterwards = outcome;
            selfcheck::Examination check(registry, [](std::uint32_t) { return std::nullopt; });
            while (check.step()) {
            }
            EXPECT_EQ(registry->device->asked, answers + 1);
            EXPECT_EQ(check.facts().givenUp, outcome);
            EXPECT_TRUE(check.facts().store.hasDocuments) << "the store is looked at all the same";
        }
    }
}

TEST_F(ExaminationTest, ACameraThatAnswersTooLateIsNotAskedAgain) {
    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{0x81, 0x82}) {
        const auto slow = std::make_shared<SilentDevice>();
        slow->answers = 100;
        slow->delayed = code;
        slow->delay = std::chrono::milliseconds(210);
        const WatchedDevice watched(slow, WatchedDevice::Orders::refused, std::chrono::milliseconds(200));
        const auto interface = watched.videoControl();
        ASSERT_EQ(interface->open(), usb::Outcome::done);
        const auto ask = [&] {
            std::vector<std::uint8_t> zoom(2);
            return interface->controlRequest({kGet, code, 0x0B00, 0x0100, 2}, zoom);
        };
        EXPECT_EQ(ask(), usb::Outcome::done) << "late as it is, it is an answer";
        // Of a question for limits the kernel's driver may make four transfers.
        const bool isTooSlow = code == 0x81;
        EXPECT_EQ(ask(), isTooSlow ? usb::Outcome::timedOut : usb::Outcome::done);
        EXPECT_EQ(slow->asked, isTooSlow ? 1 : 2);
        EXPECT_EQ(watched.log().isTooSlow, isTooSlow);

        const auto registry = std::make_shared<OneDevice>();
        registry->device = slow;
        selfcheck::Examination check(registry, [](std::uint32_t) { return std::nullopt; });
        while (check.step()) {
        }
        EXPECT_EQ(check.facts().slowest >= slow->delay, code == 0x81) << "the slowness of one transfer";
    }
}

TEST_F(OrderTrialTest, SendsTheCameraTheVeryPositionThatItReports) {
    const auto camera = plug();
    std::vector<std::uint8_t> betweenSteps{0x88, 0x13, 0, 0, 1, 0, 0, 0};
    ASSERT_TRUE(camera->controlRequest({0x21, 0x01, 0x0D00, 0x0100, 8}, betweenSteps));
    const auto found = examine();
    camera->forgetTransfers();
    const auto trial = *tried(found).trial;
    EXPECT_TRUE(trial.panTilt->wasObeyed());
    EXPECT_TRUE(trial.zoom->wasObeyed());
    const auto &transfers = camera->transfers();
    ASSERT_EQ(transfers.size(), 4U);
    EXPECT_EQ(transfers[1].setup, (usb::SetupPacket{0x21, 0x01, 0x0D00, 0x0100, 8}));
    EXPECT_EQ(transfers[1].data, betweenSteps);
    EXPECT_EQ(transfers[3].setup, (usb::SetupPacket{0x21, 0x01, 0x0B00, 0x0100, 2}));
    EXPECT_EQ(transfers[3].data, transfers[2].data);
    EXPECT_EQ(bus_->openHandles(), 0);
}

TEST_F(OrderTrialTest, SendsNothingWhereThePositionIsUnknownOrImpossible) {
    const auto setsAndStage = [this](const Options &options) {
        bus_ = std::make_shared<simulator::SimulatedRegistry>();
        const auto camera = plug(options);
        const auto trial = *tried(examine()).trial;
        return std::pair(camera->count(1, 0x0D, 0x01), trial.panTilt->stage);
    };
    Options options;
    options.outsideRange = true;
    EXPECT_EQ(setsAndStage(options), std::pair(0, Stage::outsideRange));
    options = {};
    options.refused = {{1, 0x0D, 0x81}};
    EXPECT_EQ(setsAndStage(options), std::pair(0, Stage::reading));
}

TEST_F(OrderTrialTest, ACameraThatIsGoneIsSentNothingMore) {
    const auto camera = plug();
    const auto found = examine();
    camera->unplugAfter(1);
    const auto trial = *tried(found).trial;
    EXPECT_EQ(trial.panTilt->stage, Stage::ordering);
    EXPECT_EQ(trial.panTilt->outcome, usb::Outcome::disconnected);
    EXPECT_EQ(trial.zoom->stage, Stage::reading);
    EXPECT_EQ(trial.zoom->outcome, usb::Outcome::disconnected);

    bus_->unplug(camera);
    const auto other = plug({}, 1, {2});
    EXPECT_EQ(tried(found).trial->zoom->outcome, usb::Outcome::disconnected);
    EXPECT_TRUE(other->transfers().empty()) << "another camera is not the one that was checked";
}

}  // namespace
