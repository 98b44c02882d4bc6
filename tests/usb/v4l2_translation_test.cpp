#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "usb/v4l2/translation.h"
#include "usb/v4l2/v4l2_outcome.h"
#include "uvc/uvc_catalogue.h"

namespace {

using namespace usb::v4l2;
using Bytes = std::vector<std::uint8_t>;

/// The row of a V4L2 control that has only one.
const Row &rowOf(std::uint32_t id) {
    return *std::ranges::find(kRows, id, &Row::id);
}

/// The row of the catalogue's control `name` that the V4L2 control stands for; null: none.
const Row *rowOf(std::string_view name, std::uint32_t id) {
    for (const uvc::CatalogueRow &control : UVCControllerControls) {
        if (control.name != name) continue;
        const auto rows =
            rowsOf(static_cast<std::uint8_t>(control.unitKind), static_cast<std::uint8_t>(control.selector));
        const auto found = std::ranges::find(rows, id, &Row::id);
        if (found != rows.end()) return &*found;
    }
    return nullptr;
}

TEST(V4l2Translation, TurnsEveryRowsBytesIntoTheKernelsNumberAndBack) {
    struct Case {
        const char *control;
        std::uint32_t id;
        Bytes data;
        std::int32_t number;
    };
    constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
    const std::vector<Case> cases{
        {"auto-exposure-mode", V4L2_CID_EXPOSURE_AUTO, {1}, 1},
        {"auto-exposure-mode", V4L2_CID_EXPOSURE_AUTO, {2}, 0},
        {"auto-exposure-mode", V4L2_CID_EXPOSURE_AUTO, {4}, 2},
        {"auto-exposure-mode", V4L2_CID_EXPOSURE_AUTO, {8}, 3},
        {"auto-exposure-priority", V4L2_CID_EXPOSURE_AUTO_PRIORITY, {1}, 1},
        {"exposure-time-abs", V4L2_CID_EXPOSURE_ABSOLUTE, {0x78, 0x56, 0x34, 0x12}, 0x12345678},
        // V4L2 has no wider number.
        {"exposure-time-abs", V4L2_CID_EXPOSURE_ABSOLUTE, {0xFF, 0xFF, 0xFF, 0xFF}, -1},
        {"focus-abs", V4L2_CID_FOCUS_ABSOLUTE, {0xFF, 0xFF}, 65535},
        {"auto-focus", V4L2_CID_FOCUS_AUTO, {1}, 1},
        {"iris-abs", V4L2_CID_IRIS_ABSOLUTE, {0x00, 0x80}, 32768},
        {"iris-rel", V4L2_CID_IRIS_RELATIVE, {0xFF}, -1},
        {"zoom-abs", V4L2_CID_ZOOM_ABSOLUTE, {0xE8, 0x83}, 33768},
        {"zoom-rel", V4L2_CID_ZOOM_CONTINUOUS, {0xFF, 0, 0xC8}, -200},
        {"pan-tilt-abs", V4L2_CID_PAN_ABSOLUTE, {0x60, 0x73, 0xFF, 0xFF, 0, 0, 0, 0}, -36000},
        {"pan-tilt-abs", V4L2_CID_TILT_ABSOLUTE, {0, 0, 0, 0, 0x50, 0x46, 0x00, 0x00}, 18000},
        {"pan-tilt-abs", V4L2_CID_TILT_ABSOLUTE, {0, 0, 0, 0, 0, 0, 0, 0x80}, kLowest},
        {"pan-tilt-rel", V4L2_CID_PAN_SPEED, {1, 7, 0, 0}, 7},
        {"pan-tilt-rel", V4L2_CID_PAN_SPEED, {0xFF, 0xFF, 0, 0}, -255},
        {"pan-tilt-rel", V4L2_CID_TILT_SPEED, {0, 0, 0xFF, 9}, -9},
        {"privacy", V4L2_CID_PRIVACY, {1}, 1},
        {"backlight-compensation", V4L2_CID_BACKLIGHT_COMPENSATION, {0x02, 0x01}, 258},
        {"brightness", V4L2_CID_BRIGHTNESS, {0xC0, 0xFF}, -64},
        {"contrast", V4L2_CID_CONTRAST, {0x00, 0xFF}, 65280},
        {"gain", V4L2_CID_GAIN, {0xFF, 0xFF}, 65535},
        {"power-line-frequency", V4L2_CID_POWER_LINE_FREQUENCY, {3}, 3},
        {"hue", V4L2_CID_HUE, {0x4C, 0xFF}, -180},
        {"saturation", V4L2_CID_SATURATION, {0xFF, 0xFF}, 65535},
        {"sharpness", V4L2_CID_SHARPNESS, {0xFF, 0xFF}, 65535},
        {"gamma", V4L2_CID_GAMMA, {0xFF, 0xFF}, 65535},
        {"white-balance-temp", V4L2_CID_WHITE_BALANCE_TEMPERATURE, {0x64, 0x19}, 6500},
        {"auto-white-balance-temp", V4L2_CID_AUTO_WHITE_BALANCE, {1}, 1},
        {"auto-white-balance-component", V4L2_CID_AUTO_WHITE_BALANCE, {1}, 1},
        {"white-balance-component", V4L2_CID_BLUE_BALANCE, {0x00, 0x80, 0, 0}, -32768},
        {"white-balance-component", V4L2_CID_RED_BALANCE, {0, 0, 0xFF, 0x7F}, 32767},
        {"auto-hue", V4L2_CID_HUE_AUTO, {1}, 1},
    };
    std::set<const Row *> tried;
    for (const Case &row : cases) {
        SCOPED_TRACE(row.control);
        const Row *found = rowOf(row.control, row.id);
        ASSERT_NE(found, nullptr);
        tried.insert(found);
        EXPECT_EQ(found->controlBytes, row.data.size());
        EXPECT_EQ(numberFrom(*found, row.data), row.number);
        Bytes data(row.data.size(), 0);
        EXPECT_TRUE(putNumber(*found, row.number, data));
        EXPECT_EQ(data, row.data);
    }
    EXPECT_EQ(tried.size(), kRows.size());
    EXPECT_TRUE(rowsOf(3, 0x02).empty()) << "no such unit";
}

TEST(V4l2Translation, LeavesTheOtherHalfAlone) {
    Bytes data{1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_TRUE(putNumber(rowOf(V4L2_CID_TILT_ABSOLUTE), 0, data));
    EXPECT_EQ(data, (Bytes{1, 2, 3, 4, 0, 0, 0, 0}));
}

TEST(V4l2Translation, RefusesWhatV4l2CannotSay) {
    const Row &mode = rowOf(V4L2_CID_EXPOSURE_AUTO);
    for (const std::uint8_t byte : Bytes{0, 3, 5, 16, 255})
        EXPECT_EQ(numberFrom(mode, Bytes{byte}), std::nullopt);
    Bytes data{0};
    for (const std::int64_t number : {-1, 4, 1000}) EXPECT_FALSE(putNumber(mode, number, data));

    EXPECT_EQ(numberFrom(rowOf(V4L2_CID_ZOOM_CONTINUOUS), Bytes{1, 1, 5}), std::nullopt);
    // Without a direction a speed moves nothing.
    EXPECT_EQ(numberFrom(rowOf(V4L2_CID_PAN_SPEED), Bytes{0, 9, 0, 0}), 0);
}

TEST(V4l2Translation, GivesTheRangeOfASpeedAsItsSizeAlone) {
    // The kernel negates a camera's lowest speed to tell a minimum.
    Bytes data{9, 9, 9, 9};
    EXPECT_TRUE(putLimit(rowOf(V4L2_CID_PAN_SPEED), -2, data));
    EXPECT_TRUE(putLimit(rowOf(V4L2_CID_TILT_SPEED), 24, data));
    EXPECT_EQ(data, (Bytes{0, 2, 0, 24}));
    EXPECT_TRUE(putLimit(rowOf(V4L2_CID_TILT_SPEED), std::numeric_limits<std::int64_t>::min(), data));
    EXPECT_EQ(data, (Bytes{0, 2, 0, 255}));
}

TEST(V4l2Translation, MovesASettingToTheNearestLimitAndASpeedNowhere) {
    const Row &pan = rowOf(V4L2_CID_PAN_ABSOLUTE);
    EXPECT_EQ(nearestWithin(pan, -612001, -612000, 612000), -612000);
    EXPECT_EQ(nearestWithin(pan, 612001, -612000, 612000), 612000);
    EXPECT_EQ(nearestWithin(pan, 5, 100, -100), 5) << "limits the wrong way round change nothing";
    EXPECT_EQ(nearestWithin(rowOf(V4L2_CID_ZOOM_ABSOLUTE), 0, 100, 1005), 100);
    const Row &exposure = rowOf(V4L2_CID_EXPOSURE_ABSOLUTE);
    EXPECT_EQ(nearestWithin(exposure, -2, 1, -1), -2) << "unsigned: 0xFFFFFFFE of 1 to 0xFFFFFFFF";
    EXPECT_EQ(nearestWithin(exposure, -2, 1, 10000), 10000);
    EXPECT_EQ(nearestWithin(rowOf(V4L2_CID_EXPOSURE_AUTO), 3, 0, 1), std::nullopt);

    // The kernel would send +1 for these.
    const Row &zoom = rowOf(V4L2_CID_ZOOM_CONTINUOUS);
    for (const std::int32_t speed : {-5, 0})
        EXPECT_EQ(nearestWithin(zoom, speed, 1, 7), std::nullopt) << speed;
    EXPECT_EQ(nearestWithin(zoom, 1, 1, 7), 1);
    EXPECT_EQ(nearestWithin(zoom, 0, 5, 3), std::nullopt) << "the kernel clamps to these nevertheless";
    EXPECT_EQ(nearestWithin(rowOf(V4L2_CID_PAN_SPEED), -20, -1, 24), std::nullopt);
}

TEST(V4l2Translation, MakesTheInfoByteOfTheFlags) {
    EXPECT_EQ(infoFrom(0), 0x03);
    EXPECT_EQ(infoFrom(V4L2_CTRL_FLAG_READ_ONLY), 0x01);
    EXPECT_EQ(infoFrom(V4L2_CTRL_FLAG_WRITE_ONLY), 0x02);
    EXPECT_EQ(infoFrom(V4L2_CTRL_FLAG_DISABLED), 0x00);
    EXPECT_EQ(infoFrom(V4L2_CTRL_FLAG_INACTIVE), 0x07);
    EXPECT_EQ(infoFrom(V4L2_CTRL_FLAG_VOLATILE), 0x0B);
}

TEST(V4l2Outcome, TellsTheFailuresApart) {
    using usb::Outcome;
    const std::vector<std::tuple<int, Outcome, Outcome>> rows{
        // errno, after a request, after opening a node
        {0, Outcome::done, Outcome::done},           {EINVAL, Outcome::refused, Outcome::failed},
        {EACCES, Outcome::refused, Outcome::denied}, {EPERM, Outcome::failed, Outcome::denied},
        {EPIPE, Outcome::refused, Outcome::failed},  {ENODEV, Outcome::disconnected, Outcome::disconnected},
        {EBUSY, Outcome::timedOut, Outcome::busy},   {ETIMEDOUT, Outcome::timedOut, Outcome::failed},
        {EIO, Outcome::refused, Outcome::failed},    {EPROTO, Outcome::failed, Outcome::failed},
    };
    for (const auto &[error, request, open] : rows) {
        EXPECT_EQ(outcomeOfRequest(error), request) << error;
        EXPECT_EQ(outcomeOfOpen(error), open) << error;
    }
}

}  // namespace
