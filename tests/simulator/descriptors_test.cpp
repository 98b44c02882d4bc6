#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <span>
#include <utility>
#include <vector>

#include "simulator/camera_model.h"

namespace {

using simulator::CameraModel;
using simulator::CameraOptions;
using testing::ElementsAre;

using Bytes = std::vector<std::uint8_t>;
using Kind = std::pair<int, int>;  // bDescriptorType and, for class-specific ones, bDescriptorSubtype

/// The descriptors in `bytes`; empty when their lengths do not lead exactly to the end.
std::vector<Bytes> walk(const Bytes &bytes) {
    std::vector<Bytes> found;
    std::span<const std::uint8_t> left(bytes);
    while (!left.empty()) {
        const std::size_t length = left[0];
        if (length < 2 || length > left.size()) return {};
        found.emplace_back(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(length));
        left = left.subspan(length);
    }
    return found;
}

Kind kindOf(const Bytes &descriptor) {
    const bool classSpecific = descriptor[1] == 0x24 || descriptor[1] == 0x25;
    return {descriptor[1], classSpecific ? descriptor[2] : -1};
}

unsigned word(const Bytes &bytes, std::size_t at) {
    return bytes[at] | static_cast<unsigned>(bytes[at + 1]) << 8;
}
unsigned doubleWord(const Bytes &bytes, std::size_t at) {
    return word(bytes, at) | word(bytes, at + 2) << 16;
}

/// How many bytes of class-specific interface descriptors follow each other from number `first` on.
std::size_t blockSize(const std::vector<Bytes> &descriptors, std::size_t first) {
    std::size_t size = 0;
    for (std::size_t i = first; i < descriptors.size() && descriptors[i][1] == 0x24; ++i)
        size += descriptors[i].size();
    return size;
}

class Descriptors : public testing::TestWithParam<std::uint16_t> {
 protected:
    static CameraOptions optionsOf(std::uint16_t uvcVersion) {
        CameraOptions options;
        options.uvcVersion = uvcVersion;
        return options;
    }

    CameraModel camera{optionsOf(GetParam())};
    std::vector<Bytes> all = walk(camera.configurationDescriptor());
};

TEST_P(Descriptors, FollowEachOtherToTheLastByteInTheRightOrder) {
    std::vector<Kind> kinds;
    for (const Bytes &descriptor : all) kinds.push_back(kindOf(descriptor));
    EXPECT_THAT(kinds, ElementsAre(Kind{0x02, -1},    // configuration
                                   Kind{0x0B, -1},    // interface association
                                   Kind{0x04, -1},    // VideoControl
                                   Kind{0x24, 0x01},  // header
                                   Kind{0x24, 0x02},  // camera terminal
                                   Kind{0x24, 0x05},  // processing unit
                                   Kind{0x24, 0x03},  // output terminal
                                   Kind{0x05, -1},    // status endpoint
                                   Kind{0x25, 0x03},  // and its class-specific part
                                   Kind{0x04, -1},    // VideoStreaming
                                   Kind{0x24, 0x01},  // input header
                                   Kind{0x24, 0x04},  // uncompressed format
                                   Kind{0x24, 0x05},  // uncompressed frame
                                   Kind{0x24, 0x0D},  // colour matching
                                   Kind{0x05, -1}));  // video endpoint
}

TEST_P(Descriptors, HaveTotalsThatAddUp) {
    ASSERT_EQ(all.size(), 15u);
    EXPECT_EQ(word(all[0], 2), camera.configurationDescriptor().size());
    EXPECT_EQ(word(all[3], 3), GetParam());
    EXPECT_EQ(all[5].size(), GetParam() == 0x0110 ? 13u : 11u) << "the processing unit of that version";
    EXPECT_EQ(word(all[3], 5), blockSize(all, 3));
    EXPECT_EQ(word(all[3], 5), camera.videoControlDescriptors().size());
    EXPECT_EQ(word(all[10], 4), blockSize(all, 10));
    EXPECT_EQ(camera.deviceDescriptor().size(), 18u);
    EXPECT_EQ(camera.deviceDescriptor()[0], 18u);
}

TEST_P(Descriptors, PointAtEachOther) {
    ASSERT_EQ(all.size(), 15u);
    EXPECT_EQ(all[1][2], all[2][2]) << "the association starts at the VideoControl interface";
    EXPECT_EQ(all[1][7], all[2][8]) << "iFunction and iInterface";
    EXPECT_EQ(all[3][12], all[9][2]) << "baInterfaceNr and the VideoStreaming interface";
    EXPECT_EQ(all[5][4], all[4][3]) << "the processing unit takes from the camera terminal";
    EXPECT_EQ(all[6][7], all[5][3]) << "the output terminal takes from the processing unit";
    EXPECT_EQ(all[10][8], all[6][3]) << "bTerminalLink and the output terminal";
    EXPECT_EQ(all[10][6], all[14][2]) << "the input header and the video endpoint";
    EXPECT_NE(all[7][2], all[14][2]) << "two endpoints, two addresses";
}

TEST_P(Descriptors, DescribeAFrameWhoseNumbersAgree) {
    ASSERT_EQ(all.size(), 15u);
    const Bytes &frame = all[12];
    const unsigned bytes = word(frame, 5) * word(frame, 7) * all[11][21] / 8;
    const unsigned perSecond = 10'000'000 / doubleWord(frame, 21);
    EXPECT_EQ(doubleWord(frame, 17), bytes);
    EXPECT_EQ(doubleWord(frame, 13), bytes * 8 * perSecond);
    EXPECT_EQ(doubleWord(frame, 26), doubleWord(frame, 21)) << "the default interval is the one on offer";
}

INSTANTIATE_TEST_SUITE_P(Versions, Descriptors, testing::Values(std::uint16_t{0x0100}, std::uint16_t{0x0110}),
                         [](const auto &version) { return version.param == 0x0100 ? "Uvc10" : "Uvc11"; });

}  // namespace
