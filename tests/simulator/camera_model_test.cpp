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

}  // namespace
