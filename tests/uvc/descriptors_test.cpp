#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "usb/video_control_descriptors.h"
#include "uvc/scripted_device.h"

namespace {

using scripted::Bytes;
using scripted::cameraTerminal;
using scripted::processingUnit;
using scripted::withHeader;

/// Parses a copy that fills its own allocation, so that a read past its end is caught by the sanitizer.
std::optional<usb::VideoControlDescriptors> parse(const Bytes &bytes) {
    const auto exact = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), exact.get());
    return usb::parseVideoControlDescriptors({exact.get(), bytes.size()});
}

Bytes healthy() {
    return withHeader(
        {cameraTerminal({0x0E, 0x0A, 0x02}), processingUnit({0x7F, 0x15}), {9, 0x24, 3, 4, 1, 1, 0, 5, 0}});
}

TEST(Descriptors, ForeignDescriptorsArePassedOver) {
    Bytes block = withHeader({{5, 0x25, 2, 0, 0}, cameraTerminal({0x01})});
    const Bytes foreign = {8, 0x0B, 0, 2, 14, 3, 0, 0};
    block.insert(block.begin(), foreign.begin(), foreign.end());
    const auto parsed = parse(block);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->terminalBitmap, Bytes{0x01});
}

TEST(Descriptors, LaterBitmapReplacesEarlierUnlessItIsEmpty) {
    const Bytes microphoneLikeTerminal = {8, 0x24, 2, 8, 0x01, 0x04, 0, 0};
    const auto parsed = parse(withHeader({cameraTerminal({1}), cameraTerminal({2, 3}), cameraTerminal({}),
                                          microphoneLikeTerminal, processingUnit({})}));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->terminalBitmap, (Bytes{2, 3}));
    EXPECT_FALSE(parsed->processingUnitBitmap);
}

TEST(Descriptors, RefusedWithoutAWholeHeaderInFront) {
    EXPECT_FALSE(parse({}));
    EXPECT_FALSE(parse({0}));
    EXPECT_FALSE(parse(Bytes(64, 0)));                 // bLength 0 would loop for ever
    EXPECT_FALSE(parse({1, 0x24, 1, 0x10, 1, 7, 0}));  // shorter than its own two first bytes
    EXPECT_FALSE(parse({2, 0x24}));
    EXPECT_FALSE(
        parse({6, 0x24, 1, 0x10, 1, 7, 0}));  // too short for wTotalLength, though the bytes are there
    EXPECT_FALSE(parse({13, 0x24, 1, 0x10, 1, 7, 0}));  // reaches over the end
    EXPECT_TRUE(parse({7, 0x24, 1, 0x10, 1, 7, 0}));
    EXPECT_FALSE(parse({8, 0x0B, 0, 2, 14, 3, 0, 0}));

    Bytes terminalFirst = cameraTerminal({1});
    const Bytes block = withHeader({});
    terminalFirst.insert(terminalFirst.end(), block.begin(), block.end());
    EXPECT_FALSE(parse(terminalFirst));
}

TEST(Descriptors, EveryTruncatedPrefixYieldsOnlyWholeBitmaps) {
    const Bytes block = healthy();
    for (std::size_t length = 0; length <= block.size(); ++length) {
        SCOPED_TRACE(length);
        const auto parsed = parse(Bytes(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(length)));
        ASSERT_EQ(parsed.has_value(), length >= 13);
        if (!parsed) continue;
        EXPECT_EQ(parsed->terminalBitmap.has_value(), length >= 13 + 18);
        EXPECT_EQ(parsed->processingUnitBitmap.has_value(), length >= 13 + 18 + 11);
    }
}

TEST(Descriptors, TotalLengthThatLies) {
    Bytes block = healthy();
    for (const std::size_t total : {std::size_t{0}, std::size_t{5}, std::size_t{13}, std::size_t{30}}) {
        block[5] = static_cast<std::uint8_t>(total);
        const auto parsed = parse(block);
        ASSERT_TRUE(parsed);
        EXPECT_FALSE(parsed->terminalBitmap) << total;
    }
    block[5] = 31;  // just the camera terminal
    EXPECT_TRUE(parse(block)->terminalBitmap);
    EXPECT_FALSE(parse(block)->processingUnitBitmap);

    block[5] = block[6] = 0xFF;
    EXPECT_TRUE(parse(block)->processingUnitBitmap);
}

TEST(Descriptors, BadLengthsBehindTheHeaderEndTheWalk) {
    for (const std::uint8_t length : Bytes{0, 1, 200}) {
        Bytes broken = cameraTerminal({1});
        broken[0] = length;
        const auto parsed = parse(withHeader({processingUnit({4}), broken, processingUnit({5})}));
        ASSERT_TRUE(parsed);
        EXPECT_FALSE(parsed->terminalBitmap);
        EXPECT_EQ(parsed->processingUnitBitmap, Bytes{4});
    }
}

TEST(Descriptors, ControlSizePastItsDescriptorIsNotRead) {
    Bytes terminal = cameraTerminal({1, 2, 3});
    terminal[14] = 4;
    Bytes unit = processingUnit({1, 2});
    unit[7] = 255;
    const auto parsed = parse(withHeader({cameraTerminal({9}), terminal, unit, {2, 0x24}}));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->terminalBitmap, Bytes{9});
    EXPECT_FALSE(parsed->processingUnitBitmap);
}

}  // namespace
