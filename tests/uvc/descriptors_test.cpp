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
using scripted::joined;
using scripted::processingUnit;
using scripted::withHeader;

/// What is read of a copy that fills its own allocation, so that a read past its end is caught by the
/// sanitizer: "refused", or the bytes of the terminal's and of the unit's bitmap, "-" for none.
std::string parsed(const Bytes &bytes) {
    const auto exact = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), exact.get());
    const auto found = usb::parseVideoControlDescriptors({exact.get(), bytes.size()});
    if (!found) return "refused";
    const auto text = [](const std::optional<usb::ControlBitmap> &bitmap) {
        std::string numbers = bitmap ? "" : "-";
        for (const std::uint8_t byte : bitmap.value_or(Bytes{})) numbers += std::to_string(byte) + ".";
        return numbers;
    };
    return text(found->terminalBitmap) + " " + text(found->processingUnitBitmap);
}

TEST(Descriptors, EveryTruncatedPrefixYieldsOnlyWholeBitmaps) {
    Bytes block = withHeader({cameraTerminal({14, 10, 2}), processingUnit({127, 21}), {5, 0x24, 3, 4, 1}});
    for (std::size_t length = 0; length <= block.size(); ++length)
        EXPECT_EQ(parsed(Bytes(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(length))),
                  length < 13        ? "refused"
                  : length < 13 + 18 ? "- -"
                  : length < 31 + 11 ? "14.10.2. -"
                                     : "14.10.2. 127.21.");
    // A total length that lies
    for (const std::uint8_t total : Bytes{0, 5, 13, 30, 31}) {
        block[5] = total;
        EXPECT_EQ(parsed(block), total < 31 ? "- -" : "14.10.2. -");
    }
    block[5] = block[6] = 0xFF;
    EXPECT_EQ(parsed(block), "14.10.2. 127.21.");
}

TEST(Descriptors, NothingInThemIsTrusted) {
    Bytes tooLong = cameraTerminal({1, 2, 3});
    tooLong[14] = 4;  // more controls than its descriptor has room for
    Bytes farTooLong = processingUnit({1, 2});
    farTooLong[7] = 255;
    const Bytes microphoneLike = {8, 0x24, 2, 8, 0x01, 0x04, 0, 0};
    const Bytes association = {8, 0x0B, 0, 2, 14, 3, 0, 0};
    const std::pair<Bytes, const char *> rows[] = {
        // A whole header has to come first, of the class-specific ones.
        {Bytes(64, 0), "refused"},
        {{1, 0x24, 1, 0x10, 1, 7, 0}, "refused"},
        {{6, 0x24, 1, 0x10, 1, 7, 0}, "refused"},
        {{13, 0x24, 1, 0x10, 1, 7, 0}, "refused"},
        {{7, 0x24, 1, 0x10, 1, 7, 0}, "- -"},
        {association, "refused"},
        {joined(cameraTerminal({1}), withHeader({})), "refused"},
        {joined(association, withHeader({{9, 0x25, 5, 0, 0, 0, 0, 1, 7}, cameraTerminal({1})})), "1. -"},
        // The last bitmap counts, unless it is empty or reaches too far.
        {withHeader({cameraTerminal({1}), cameraTerminal({2, 3}), cameraTerminal({}), microphoneLike}),
         "2.3. -"},
        {withHeader({processingUnit({}), cameraTerminal({9}), tooLong, farTooLong, {2, 0x24}}), "9. -"}};
    for (const auto &[bytes, expected] : rows) EXPECT_EQ(parsed(bytes), expected);

    for (const std::uint8_t length : Bytes{0, 1, 200}) {  // end the walk
        Bytes broken = cameraTerminal({1});
        broken[0] = length;
        EXPECT_EQ(parsed(withHeader({processingUnit({4}), broken, processingUnit({5})})), "- 4.");
    }
}

}  // namespace
