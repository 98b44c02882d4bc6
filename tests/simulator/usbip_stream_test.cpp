#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>

#include "simulator/camera_descriptors.h"
#include "simulator/usbip/room_picture.h"
#include "simulator/usbip_host.h"

namespace {

using namespace std::chrono_literals;
using namespace usbip_test;
using simulator::CameraModel;
using simulator::CameraOptions;
using simulator::kFrameBytes;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;

constexpr std::size_t kMostPayload = 16384;

std::uint32_t littleAt(const Bytes &bytes, std::size_t at) {
    return bytes[at] | bytes[at + 1] * 0x100u | bytes[at + 2] * 0x10000u | bytes[at + 3] * 0x1000000u;
}

TEST(UsbipStream, OffersTheFormatOfItsDescriptorsInTheSizeOfItsVersion) {
    for (const auto &[version, size] :
         {std::pair{std::uint16_t{0x0100}, 26u}, {std::uint16_t{0x0110}, 34u}}) {
        CameraOptions options;
        options.uvcVersion = version;
        Bench bench(options);
        Host host(bench);
        ASSERT_TRUE(host.import());
        EXPECT_EQ(host.get(0x85, 0x0100, 1, 2).data, (Bytes{static_cast<std::uint8_t>(size), 0}));
        EXPECT_EQ(host.get(0x86, 0x0100, 1, 1).data, Bytes{3});
        const Bytes offer = host.get(0x87, 0x0100, 1, 48).data;
        ASSERT_EQ(offer.size(), size) << "not more than there is";
        for (const std::uint8_t request : Bytes{0x81, 0x82, 0x83})
            EXPECT_EQ(host.get(request, 0x0100, 1, 48).data, offer);
        EXPECT_EQ(littleAt(offer, 4), 1'000'000u) << "100 ms in units of 100 ns";
        EXPECT_EQ(littleAt(offer, 18), 160u * 120 * 2);
        EXPECT_EQ(littleAt(offer, 22), kMostPayload);

        EXPECT_EQ(host.set(0x0100, 1, Bytes(size, 0xFF)).status, 0) << "an offer may be anything";
        EXPECT_EQ(host.get(0x81, 0x0100, 1, 48).data, offer) << "and changes nothing";
        EXPECT_EQ(host.set(0x0200, 1, Bytes(size, 0xFF)).status, -32) << "the last word may not";
        EXPECT_EQ(host.set(0x0200, 1, Bytes(size - 1, 1)).status, -32);
        EXPECT_THAT(bench.log.str(), testing::Not(HasSubstr("stream-start")));
        EXPECT_EQ(host.set(0x0200, 1, offer).status, 0);
        EXPECT_THAT(bench.log.str(), EndsWith("stream-start\n"));
    }
}

struct Payload {
    std::uint8_t flags = 0;
    Bytes video;
};

/// Collects a payload as a host does that asks for `length` bytes at a time.
Payload takePayload(Host &host, std::uint32_t length) {
    Bytes bytes;
    while (true) {
        host.send(submit(1, 2, kToHost, length));
        const auto reply = host.reply(true);
        if (!reply || reply->status != 0 || reply->data.size() > length) return {};
        bytes = std::move(bytes) + reply->data;
        if (reply->data.size() < length || bytes.size() >= kMostPayload) break;
    }
    if (bytes.size() < 2 || bytes.size() > kMostPayload || bytes[0] != 2) return {};
    return {bytes[1], Bytes(bytes.begin() + 2, bytes.end())};
}

class UsbipFrames : public testing::TestWithParam<std::uint32_t> {};

TEST_P(UsbipFrames, AreWholeAndToldApart) {
    Bench bench;
    Host host(bench);
    ASSERT_TRUE(host.import());
    ASSERT_TRUE(host.startStream());

    int lastId = -1;
    for (std::uint8_t number = 1; number <= 3; ++number) {
        Bytes frame;
        Payload payload;
        do {
            payload = takePayload(host, GetParam());
            ASSERT_EQ(payload.flags & 0x80, 0x80) << "a header, with its end mark";
            ASSERT_NE(payload.flags & 0x01, lastId) << "one frame id a frame, another one for the next";
            frame = std::move(frame) + payload.video;
            ASSERT_LE(frame.size(), kFrameBytes);
        } while ((payload.flags & 0x02) == 0);
        EXPECT_EQ(frame.size(), kFrameBytes);
        EXPECT_THAT(frame, Each(number));
        lastId = payload.flags & 0x01;
    }
    host.control({0x02, 0x01, 0, 0x82, 0});
    EXPECT_THAT(bench.log.str(), EndsWith("1-1 stream-stop frames=3\n")) << "clearing the halt ends a stream";
    host.send(submit(9, 2, kToHost, 512));
    EXPECT_TRUE(host.isQuiet(150ms));
}

// The kernel's transfers, one packet, and sizes that a payload does and does not fill: the last payload of a
// frame is 5638 bytes long, two times 2819.
INSTANTIATE_TEST_SUITE_P(Transfers, UsbipFrames, testing::Values(16384, 512, 4096, 2819, 65536));

TEST(UsbipStream, KeepsItsPaceAndSkipsWhatNobodyAskedFor) {
    Bench bench;
    Host host(bench);
    ASSERT_TRUE(host.import());
    ASSERT_TRUE(host.startStream());
    const auto start = std::chrono::steady_clock::now();
    for (int payload = 0; payload < 9; ++payload) ASSERT_NE(takePayload(host, 16384).flags, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 195ms) << "the third frame is due after 200 ms";

    EXPECT_TRUE(host.isQuiet(500ms));
    EXPECT_EQ(bench.painted, 3) << "nothing is drawn for nobody";
    for (int payload = 0; payload < 9; ++payload) ASSERT_NE(takePayload(host, 16384).flags, 0);
    EXPECT_EQ(bench.painted, 6);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 195ms + 500ms + 95ms) << "no burst to catch up";
}

TEST(UsbipStream, IsNotHeldUpByASlowControl) {
    Bench bench;
    bench.models[0]->setAnswerDelay(400ms);
    Host host(bench);
    ASSERT_TRUE(host.import());
    ASSERT_TRUE(host.startStream());
    host.send(submit(1, 0, kToHost, 8, wireSetup({0xA1, 0x81, 0x0D00, 0x0100, 8})));
    host.send(submit(2, 2, kToHost, 16384) + submit(3, 2, kToHost, 16384) + submit(4, 2, kToHost, 16384) +
              submit(5, 2, kToHost, 16384));
    for (const std::uint32_t sequence : {2u, 3u, 4u, 5u, 1u})
        EXPECT_EQ(host.reply(true).value_or(Reply{}).sequence, sequence);
}

TEST(RoomPicture, TurnsColoursIntoVideoLevels) {
    QImage picture(4, 2, QImage::Format_RGB32);
    picture.fill(Qt::black);
    picture.setPixel(0, 0, qRgb(255, 255, 255));
    picture.setPixel(1, 0, qRgb(255, 255, 255));
    picture.setPixel(2, 0, qRgb(255, 0, 0));
    picture.setPixel(3, 0, qRgb(255, 0, 0));
    picture.setPixel(2, 1, qRgb(0, 0, 255));
    picture.setPixel(3, 1, qRgb(0, 0, 255));
    // Levels of BT.601 for white, red, black and blue: Y, Cb, Y, Cr.
    EXPECT_EQ(simulator::usbip::yuy2(picture), (Bytes{235, 128, 235, 128, 82, 90, 82, 240,  //
                                                      16, 128, 16, 128, 41, 240, 41, 110}));
}

TEST(RoomPicture, FollowsTheCamera) {
    auto now = std::chrono::steady_clock::time_point(1h);
    CameraModel camera({}, [&now] { return now; });
    simulator::usbip::RoomPicture picture;
    const Bytes before = picture.of(camera);
    ASSERT_EQ(before.size(), kFrameBytes);
    EXPECT_EQ(picture.of(camera), before);

    Bytes right{0x40, 0x7E, 0x05, 0x00, 0, 0, 0, 0};
    ASSERT_TRUE(camera.controlRequest({0x21, 0x01, 0x0D00, 0x0100, 8}, right));
    now += 1s;
    const Bytes onTheWay = picture.of(camera);
    EXPECT_NE(onTheWay, before);
    now += 1s;
    EXPECT_NE(picture.of(camera), onTheWay);
}

}  // namespace
