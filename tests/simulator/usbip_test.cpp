#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/usbip/command_line.h"
#include "simulator/usbip_host.h"

namespace {

using namespace usbip_test;
using testing::HasSubstr;

constexpr std::int32_t kStall = -32;
constexpr std::int32_t kUnlinked = -104;

/// 100 degrees to the right and 30 upwards.
const Bytes kSomewhere{0x40, 0x7E, 0x05, 0x00, 0xE0, 0xA5, 0x01, 0x00};
constexpr std::uint16_t kPanTilt = 0x0D00;
constexpr std::uint16_t kTerminal = 0x0100;
constexpr usb::SetupPacket kGetPosition{0xA1, 0x81, kPanTilt, kTerminal, 8};
constexpr usb::SetupPacket kSetPosition{0x21, 0x01, kPanTilt, kTerminal, 8};

class Usbip : public testing::Test {
 protected:
    Bench bench;
    Host host{bench};
};

TEST_F(Usbip, ListsItsCamerasWithTheirInterfaces) {
    host.send(big({0x01118005, 0}));
    const Bytes list = host.receive(12 + 2 * (312 + 2 * 4));
    ASSERT_EQ(list.size(), 12u + 2 * 320);
    EXPECT_STREQ(std::string(list.begin() + 12 + 320 + 256, list.end()).c_str(), "1-2");
    EXPECT_EQ(bigAt(list, 12 + 320 - 4), 0x0E020000u) << "VideoStreaming";
}

TEST_F(Usbip, LendsACameraToOneHostAtATime) {
    ASSERT_TRUE(host.import());
    EXPECT_EQ(host.control({0x00, 0x09, 1, 0, 0}).status, 0);
    Host second(bench);
    second.send(importRequest("1-1"));
    EXPECT_EQ(second.receive(8), big({0x01110003, 2})) << "busy";
    second.send(importRequest("7-7"));
    EXPECT_EQ(second.receive(8), big({0x01110003, 4})) << "no such device";
    EXPECT_TRUE(second.import("1-2")) << "a refusal is not the end of the connection";

    bench.server->unplugAll();
    EXPECT_TRUE(host.isClosed());
    Host again(bench);
    EXPECT_TRUE(again.import());
    EXPECT_EQ(again.control({0x80, 0x08, 0, 0, 1}).data, Bytes{0}) << "not configured, as a new device";
    EXPECT_THAT(bench.log.str(), HasSubstr("1-1 unplug\n1-2 unplug\n1-1 detach\n1-2 detach\n1-1 attach\n"));
}

TEST_F(Usbip, MovesTheCameraThatWasImportedAndLogsIt) {
    ASSERT_TRUE(host.import("1-2"));
    EXPECT_EQ(host.control(kSetPosition, kSomewhere).status, 0);
    EXPECT_EQ(bench.models[1]->target().pan, 360000);
    EXPECT_EQ(bench.models[1]->target().tilt, 108000);
    EXPECT_EQ(bench.models[0]->target().pan, 0);
    EXPECT_EQ(host.control(kGetPosition).data, kSomewhere);
    host.control({0x80, 0x33, 0, 0, 2});
    EXPECT_EQ(bench.log.str(),
              "1-2 attach\n"
              "1-2 SET_CUR interface=0 unit=1 selector=0x0d length=8 data=407e0500e0a50100 ok\n"
              "1-2 GET_CUR interface=0 unit=1 selector=0x0d length=8 data=407e0500e0a50100 ok\n"
              "1-2 REQUEST_80_33 value=0x0000 index=0x0000 length=2 data= stall\n");
}

TEST_F(Usbip, TellsWhyItStalled) {
    bench.models[0]->refuse({1, 0x0D, 0x87});
    bench.models[0]->refuse({1, 0x0B, 0x01});
    ASSERT_TRUE(host.import());
    const std::tuple<std::uint8_t, usb::SetupPacket, Bytes> rows[] = {
        {4, kSetPosition, {0, 0, 0, 0x7F, 0, 0, 0, 0}},           // out of range
        {7, {0xA1, 0x87, kPanTilt, kTerminal, 8}, {}},            // invalid request
        {7, {0x21, 0x01, kPanTilt, kTerminal, 4}, {0, 0, 0, 0}},  // of a wrong length
        {6, {0xA1, 0x81, 0x1300, kTerminal, 8}, {}},              // invalid control
        {5, {0xA1, 0x81, kPanTilt, 0x0900, 8}, {}},               // invalid unit
        {2, {0x21, 0x01, 0x0B00, kTerminal, 2}, {1, 0}},          // wrong state
        {0, kSetPosition, kSomewhere},                            // none after a success
    };
    for (const auto &[reason, setup, data] : rows) {
        EXPECT_EQ(host.control(setup, data).status, reason == 0 ? 0 : kStall) << int{reason};
        for (int asked = 0; asked < 2; ++asked)
            EXPECT_EQ(host.control({0xA1, 0x81, 0x0200, 0, 1}).data, Bytes{reason});
    }
}

TEST_F(Usbip, DoesNotDoWhatWasCancelledWhileItWasSlow) {
    bench.models[0]->setAnswerDelay(10s);
    ASSERT_TRUE(host.import());
    host.send(submit(5, 0, kToDevice, 8, wireSetup(kSetPosition)) + kSomewhere + unlink(6, 5));
    EXPECT_EQ(host.reply(false).status, kUnlinked);
    EXPECT_EQ(bench.models[0]->target().pan, 0);
    EXPECT_THAT(bench.log.str(),
                HasSubstr("SET_CUR interface=0 unit=1 selector=0x0d length=8 data= cancelled\n"));
}

TEST_F(Usbip, TakesACommandThatComesInPieces) {
    ASSERT_TRUE(host.import());
    const Bytes whole = submit(5, 0, kToDevice, 8, wireSetup(kSetPosition)) + kSomewhere;
    for (const std::ptrdiff_t cut : {1, 47, 48, 55}) {
        host.send(Bytes(whole.begin(), whole.begin() + cut));
        ASSERT_TRUE(host.isQuiet(10ms)) << cut;
        host.send(Bytes(whole.begin() + cut, whole.end()));
        EXPECT_EQ(host.reply(false).status, 0) << cut;
    }
    EXPECT_EQ(bench.models[0]->count(1, 0x0D, 0x01), 4);
}

TEST_F(Usbip, NeverBelievesBothDirectionsOfOneCommand) {
    ASSERT_TRUE(host.import());
    host.send(submit(5, 0, kToHost, 8, wireSetup(kSetPosition)) +
              submit(6, 0, kToDevice, 4, wireSetup(kSetPosition)) + Bytes(4, 1) +
              submit(7, 0, kToDevice, 0, wireSetup(kGetPosition)));
    for (const std::uint32_t sequence : {5u, 6u, 7u}) {
        const Reply reply = host.reply();
        EXPECT_EQ(reply.sequence, sequence);
        EXPECT_EQ(reply.status, kStall);
    }
    EXPECT_EQ(bench.models[0]->target().pan, 0);
}

TEST_F(Usbip, EndsTheConnectionAtNonsenseAndNothingElse) {
    Bytes tooMany;
    for (std::uint32_t i = 0; i < 600; ++i) tooMany = std::move(tooMany) + submit(i, 1, kToHost, 16);
    const std::tuple<const char *, bool, Bytes> rows[] = {
        {"another version", false, big({0x01068005, 0})},
        {"unknown operation", false, big({0x01118009, 0})},
        {"direction", true, submit(1, 0, 2, 0)},
        {"endpoint", true, submit(1, 16, kToHost, 0)},
        {"gigabytes", true, submit(1, 0, kToDevice, 0x7FFFFFFF)},
        {"isochronous", true, big({1, 1, 1, 1, 2, 0, 512, 0, 8, 1, 0, 0})},
        {"too many", true, tooMany}};
    for (const auto &[name, imported, bytes] : rows) {
        Host wrong(bench);
        ASSERT_TRUE(!imported || wrong.import()) << name;
        wrong.send(bytes);
        EXPECT_TRUE(wrong.isClosed()) << name;
    }
    EXPECT_TRUE(host.import());
}

TEST(UsbipCommandLine, TakesWhatItDocumentsAndNothingElse) {
    const auto read = [](std::vector<const char *> arguments) {
        return simulator::usbip::readCommandLine(arguments);
    };
    const auto full = read({"--port", "0", "--cameras", "2", "--fault", "slow", "--model",
                            model::kRecords.back().ids.data(), "--fault", "ids", "--log", "x"});
    ASSERT_TRUE(full);
    EXPECT_EQ(full->port, 0);
    EXPECT_EQ(full->cameras, 2u);
    EXPECT_EQ(full->options.answerDelay, 1s);
    EXPECT_EQ(full->options.cameraTerminalId, 5);
    EXPECT_EQ(full->options.record.ids, model::kRecords.back().ids);
    EXPECT_EQ(full->logFile, "x");

    const std::pair<const char *, const char *> wrong[] = {
        {"--port", "65536"}, {"--port", "32x"}, {"--cameras", "0"}, {"--cameras", "5"},
        {"--fault", "none"}, {"--log", ""},     {"3240", "1"},      {"--model", "0000:0000"}};
    for (const auto &[option, value] : wrong) EXPECT_FALSE(read({option, value})) << option << value;
    EXPECT_FALSE(read({"--port"}));
}

}  // namespace
