#include "simulator/camera_model.h"

#include <gtest/gtest.h>

#include "support/simulated_camera.h"

namespace {

using namespace std::chrono_literals;
using simulator::Bytes;
using simulator::CameraModel;
using simulator::CameraOptions;

constexpr std::uint16_t kPanTilt = 0x0D00;
constexpr std::uint16_t kTerminal = 0x0100;
constexpr std::uint16_t kProcessing = 0x0200;

TEST(CameraModel, AnswersTheLibraryForExactlyTheControlsThatItAnnounces) {
    CameraOptions withoutZoom;
    withoutZoom.hasZoomAbs = false;
    CameraOptions withExposure;
    withExposure.hasExposureMode = true;
    const std::pair<CameraOptions, int> rows[] = {{{}, 12}, {withoutZoom, 11}, {withExposure, 13}};
    for (const auto &[options, number] : rows) {
        const support::SimulatedCamera bench(options);
        const auto controllers = UVCController::uvcControllers();
        ASSERT_TRUE(controllers);
        int answered = 0;
        for (const std::string &name : UVCController::controlStrings()) {
            const bool isAnswered = controllers->front()->controlWithName(name) != nullptr;
            EXPECT_EQ(isAnswered, !controllers->front()->controlIsNotAvailable(name)) << name;
            answered += isAnswered ? 1 : 0;
        }
        EXPECT_EQ(answered, number);
    }
}

TEST(CameraModel, TakesEveryValueUpToItsLimits) {
    const std::tuple<bool, std::uint16_t, std::uint16_t, Bytes> rows[] = {
        {false, kTerminal, kPanTilt, {0x5F, 0xA9, 0xF6, 0xFF, 0, 0, 0, 0}},  // pan
        {true, kTerminal, kPanTilt, {0x60, 0xA9, 0xF6, 0xFF, 0, 0, 0, 0}},
        {false, kTerminal, kPanTilt, {0, 0, 0, 0, 0xA1, 0xF1, 0x04, 0x00}},  // tilt
        {true, kTerminal, kPanTilt, {0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}},   // between two steps
        {false, kProcessing, 0x0200, {0xBF, 0xFF}},                          // brightness
    };
    for (const auto &[taken, index, value, sent] : rows) {
        CameraModel camera;
        Bytes data = sent;
        const auto size = static_cast<std::uint16_t>(data.size());
        EXPECT_EQ(camera.controlRequest({0x21, 0x01, value, index, size}, data).has_value(), taken);
        EXPECT_EQ(camera.controlRequest({0xA1, 0x81, value, index, size}, data), size);
        EXPECT_EQ(data == sent, taken) << testing::PrintToString(sent);
    }
}

class MotorsTest : public testing::Test {
 protected:
    void turnTo(int degrees) {
        simulator::ByteWriter position(std::endian::little);
        Bytes data = position.u4(static_cast<std::uint32_t>(kDegree * degrees)).u4(0).finished();
        ASSERT_TRUE(camera.controlRequest({0x21, 0x01, kPanTilt, kTerminal, 8}, data));
        Bytes current(8, 0xEE);
        ASSERT_TRUE(camera.controlRequest({0xA1, 0x81, kPanTilt, kTerminal, 8}, current));
        EXPECT_EQ(current, data) << "where it is heading, at once";
    }

    static constexpr int kDegree = 3600;
    std::chrono::steady_clock::time_point now{1h};
    CameraModel camera{{}, [this] { return now; }};
};

TEST_F(MotorsTest, TravelWithoutTurningBackAndArriveOnTime) {
    turnTo(120);
    // Sixty degrees a second, and a quarter of a second for speeding up and slowing down.
    double before = 0;
    for (auto time = 10ms; time < 2250ms; time += 10ms) {
        now += 10ms;
        if (time == 1000ms) turnTo(120);  // changes nothing
        const double travelled = camera.pose().pan - before;
        EXPECT_GT(travelled, 0) << time.count();
        EXPECT_LE(travelled, 0.6001 * kDegree) << time.count();
        EXPECT_TRUE(camera.isMoving()) << time.count();
        before = camera.pose().pan;
    }
    now += 10ms;
    EXPECT_EQ(camera.pose().pan, 120 * kDegree);
    EXPECT_FALSE(camera.isMoving());

    turnTo(119);
    now += 64ms;
    EXPECT_NEAR(camera.pose().pan, 119.5 * kDegree, 0.02 * kDegree) << "too short a way for full speed";
    now += 66ms;
    EXPECT_EQ(camera.pose().pan, 119 * kDegree);
}

TEST_F(MotorsTest, TurnRoundWhereTheyStandWithoutAJump) {
    turnTo(120);
    now += 1125ms;
    turnTo(-30);
    EXPECT_NEAR(camera.pose().pan, 60 * kDegree, 1);
    now += 10s;
    EXPECT_EQ(camera.pose().pan, -30 * kDegree);
}

}  // namespace
