#include "simulator/camera_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace std::chrono_literals;
using simulator::CameraModel;
using simulator::CameraOptions;
using testing::ElementsAre;
using testing::ElementsAreArray;

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint16_t kZoom = 0x0B00;
constexpr std::uint16_t kPanTilt = 0x0D00;
constexpr std::uint16_t kTerminal = 0x0100;
constexpr std::uint16_t kProcessing = 0x0200;

/// -10 and 5 degrees.
const Bytes kSomewhere{0x60, 0x73, 0xFF, 0xFF, 0x50, 0x46, 0x00, 0x00};

class CameraModelTest : public testing::Test {
 protected:
    CameraModel make(CameraOptions options = {}) {
        return CameraModel(std::move(options), [this] { return now; });
    }

    /// The camera's answer; empty when it stalls.
    static Bytes get(CameraModel &camera, std::uint8_t request, std::uint16_t index, std::uint16_t value,
                     std::uint16_t length) {
        Bytes data(length, 0xEE);
        return camera.controlRequest({0xA1, request, value, index, length}, data) ? data : Bytes{};
    }

    static bool set(CameraModel &camera, std::uint16_t index, std::uint16_t value, Bytes data) {
        const auto length = static_cast<std::uint16_t>(data.size());
        return camera.controlRequest({0x21, 0x01, value, index, length}, data).has_value();
    }

    std::chrono::steady_clock::time_point now{1h};
};

/// Every control of the two units that the class knows: unit, selector, bit in bmControls.
struct Known {
    std::uint8_t unit, selector, bit;
};
constexpr Known kKnown[] = {
    {1, 0x01, 0},  {1, 0x02, 1},  {1, 0x03, 2},  {1, 0x04, 3},  {1, 0x05, 4},  {1, 0x06, 5},  {1, 0x07, 6},
    {1, 0x08, 17}, {1, 0x09, 7},  {1, 0x0A, 8},  {1, 0x0B, 9},  {1, 0x0C, 10}, {1, 0x0D, 11}, {1, 0x0E, 12},
    {1, 0x0F, 13}, {1, 0x10, 14}, {1, 0x11, 18}, {2, 0x01, 8},  {2, 0x02, 0},  {2, 0x03, 1},  {2, 0x04, 9},
    {2, 0x05, 10}, {2, 0x06, 2},  {2, 0x07, 3},  {2, 0x08, 4},  {2, 0x09, 5},  {2, 0x0A, 6},  {2, 0x0B, 12},
    {2, 0x0C, 7},  {2, 0x0D, 13}, {2, 0x0E, 14}, {2, 0x0F, 15}, {2, 0x10, 11}, {2, 0x11, 16}, {2, 0x12, 17}};

TEST_F(CameraModelTest, AnswersExactlyForTheControlsThatItsBitmapsAnnounce) {
    CameraOptions withoutZoom;
    withoutZoom.hasZoomAbs = false;
    CameraOptions withoutPanTilt;
    withoutPanTilt.hasPanTiltAbs = false;
    CameraOptions older;
    older.uvcVersion = 0x0100;

    for (const CameraOptions &options : {CameraOptions{}, withoutZoom, withoutPanTilt, older}) {
        CameraModel camera = make(options);
        const Bytes block = camera.videoControlDescriptors();
        const std::size_t terminal = 13;  // behind the header
        const std::size_t unit = terminal + block[terminal];
        const Bytes terminalBits(block.begin() + 13 + 15, block.begin() + 13 + 18);
        const Bytes unitBits(block.begin() + static_cast<std::ptrdiff_t>(unit) + 8,
                             block.begin() + static_cast<std::ptrdiff_t>(unit) + 8 + block[unit + 7]);
        int announced = 0;
        for (const Known &known : kKnown) {
            const Bytes &bits = known.unit == 1 ? terminalBits : unitBits;
            const std::size_t byte = known.bit / 8u;
            const bool isSet = byte < bits.size() && (bits[byte] >> (known.bit % 8) & 1) != 0;
            const auto index = static_cast<std::uint16_t>(known.unit << 8);
            const auto value = static_cast<std::uint16_t>(known.selector << 8);
            EXPECT_EQ(!get(camera, 0x86, index, value, 1).empty(), isSet)
                << int{known.unit} << "/" << int{known.selector};
            announced += isSet ? 1 : 0;
        }
        EXPECT_EQ(announced, options.hasZoomAbs && options.hasPanTiltAbs ? 12 : 11);
    }
}

TEST_F(CameraModelTest, StallsWhatItDoesNotKnowOrWillNotTake) {
    struct Row {
        std::string name;
        usb::SetupPacket setup;
        Bytes data;
    };
    const std::vector<Row> rows{
        {"another interface", {0xA1, 0x81, kZoom, 0x0101, 2}, {0, 0}},
        {"another unit", {0xA1, 0x81, kZoom, 0x0300, 2}, {0, 0}},
        {"unknown selector", {0xA1, 0x81, 0x0F00, kTerminal, 2}, {0, 0}},
        {"low byte of the selector", {0xA1, 0x81, kZoom + 1, kTerminal, 2}, {0, 0}},
        {"get too short", {0xA1, 0x81, kZoom, kTerminal, 1}, {0}},
        {"get too long", {0xA1, 0x81, kZoom, kTerminal, 3}, {0, 0, 0}},
        {"set code in a get", {0xA1, 0x01, kZoom, kTerminal, 2}, {0, 0}},
        {"get code in a set", {0x21, 0x81, kZoom, kTerminal, 2}, {0, 0}},
        {"standard request", {0x80, 0x81, kZoom, kTerminal, 2}, {0, 0}},
        {"set too short", {0x21, 0x01, kZoom, kTerminal, 1}, {1}},
        {"set too long", {0x21, 0x01, kZoom, kTerminal, 3}, {1, 0, 0}},
        {"zoom above", {0x21, 0x01, kZoom, kTerminal, 2}, {0xE9, 0x03}},
        {"pan below", {0x21, 0x01, kPanTilt, kTerminal, 8}, {0x5F, 0xA9, 0xF6, 0xFF, 0, 0, 0, 0}},
        {"tilt above", {0x21, 0x01, kPanTilt, kTerminal, 8}, {0, 0, 0, 0, 0xA1, 0xF1, 0x04, 0x00}},
        {"brightness -65", {0x21, 0x01, 0x0200, kProcessing, 2}, {0xBF, 0xFF}},
        {"length without data", {0x21, 0x01, kZoom, kTerminal, 2}, {}},
    };
    CameraModel camera = make();
    for (const Row &row : rows) {
        Bytes data = row.data;
        EXPECT_FALSE(camera.controlRequest(row.setup, data)) << row.name;
        EXPECT_EQ(data, row.data) << row.name;
    }
    EXPECT_FALSE(camera.isMoving());
    EXPECT_EQ(camera.transfers().size(), rows.size());
    EXPECT_EQ(camera.count(1, 0x0B, 0x01), 0);
}

TEST_F(CameraModelTest, TakesEveryValueUpToItsLimitsAndOffItsSteps) {
    CameraModel camera = make();
    EXPECT_TRUE(set(camera, kTerminal, kPanTilt, {0x60, 0xA9, 0xF6, 0xFF, 0xA0, 0xF1, 0x04, 0x00}));
    EXPECT_EQ(camera.target().pan, camera.minimum().pan);
    EXPECT_EQ(camera.target().tilt, camera.maximum().tilt);

    EXPECT_TRUE(set(camera, kTerminal, kPanTilt, {0x01, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(camera.target().pan, 1);
    EXPECT_EQ(camera.target().tilt, -1);
    EXPECT_TRUE(set(camera, kProcessing, 0x0200, {0xC0, 0xFF}));
    EXPECT_THAT(get(camera, 0x81, kProcessing, 0x0200, 2), ElementsAre(0xC0, 0xFF));
    EXPECT_EQ(camera.count(1, 0x0D, 0x01), 2);
    EXPECT_THAT(get(camera, 0x85, kTerminal, kPanTilt, 2), ElementsAre(8, 0)) << "GET_LEN";
}

TEST_F(CameraModelTest, AnswersWhereItIsHeadingWhileTheMotorsRun) {
    CameraModel camera = make();
    ASSERT_TRUE(set(camera, kTerminal, kPanTilt, kSomewhere));
    ASSERT_TRUE(set(camera, kTerminal, kZoom, {0xE8, 0x03}));
    EXPECT_THAT(get(camera, 0x81, kTerminal, kPanTilt, 8), ElementsAreArray(kSomewhere));
    EXPECT_THAT(get(camera, 0x81, kTerminal, kZoom, 2), ElementsAre(0xE8, 0x03));
    EXPECT_TRUE(camera.isMoving());
    EXPECT_EQ(camera.pose().pan, 0);

    now += 300ms;
    EXPECT_LT(camera.pose().pan, 0);
    EXPECT_GT(camera.pose().pan, -36000);
    EXPECT_GT(camera.pose().tilt, 0);
    EXPECT_GT(camera.pose().zoom, 0);

    now += 5s;
    EXPECT_FALSE(camera.isMoving());
    EXPECT_EQ(camera.pose().pan, -36000);
    EXPECT_EQ(camera.pose().tilt, 18000);
    EXPECT_EQ(camera.pose().zoom, 1000);
}

TEST_F(CameraModelTest, ForgetsOldRequestsRatherThanGrowingForDays) {
    CameraModel camera = make();
    for (int i = 0; i < 30000; ++i)
        (void)set(camera, kTerminal, kZoom, {static_cast<std::uint8_t>(i & 0xFF), 0});
    EXPECT_LE(camera.transfers().size(), 10000u);
    EXPECT_THAT(camera.transfers().back().data, ElementsAre(29999 & 0xFF, 0));
}

}  // namespace
