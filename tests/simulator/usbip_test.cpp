#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "simulator/usbip/command_line.h"
#include "simulator/usbip_host.h"

namespace {

using namespace std::chrono_literals;
using namespace usbip_test;
using simulator::CameraOptions;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::int32_t kStall = -32;
constexpr std::int32_t kUnlinked = -104;

/// 100 degrees to the right and 30 upwards.
const Bytes kSomewhere{0x40, 0x7E, 0x05, 0x00, 0xE0, 0xA5, 0x01, 0x00};
constexpr std::uint16_t kPanTilt = 0x0D00;
constexpr std::uint16_t kTerminal = 0x0100;

class Usbip : public testing::Test {
 protected:
    Bench bench;
    Host host{bench};
};

TEST_F(Usbip, ListsItsCamerasWithTheirInterfaces) {
    host.send(big({0x01118005, 0}));
    const Bytes list = host.receive(12 + 2 * (312 + 2 * 4));
    ASSERT_EQ(list.size(), 12u + 2 * 320);
    EXPECT_EQ(bigAt(list, 0), 0x01110005u);
    EXPECT_EQ(bigAt(list, 8), 2u);
    EXPECT_STREQ(std::string(list.begin() + 12 + 320 + 256, list.end()).c_str(), "1-2");
    const std::size_t numbers = 12 + 256 + 32;
    EXPECT_EQ(bigAt(list, numbers + 8), 3u) << "high speed";
    const model::Record &record = model::kRecords.front();
    EXPECT_EQ(bigAt(list, numbers + 12), std::uint32_t{record.vendorId} << 16 | record.productId);
    EXPECT_EQ(bigAt(list, numbers + 19), 0x02010101u) << "subclass, protocol, configuration, configurations";
    EXPECT_EQ(list[numbers + 23], 2u) << "interfaces";
    EXPECT_EQ(bigAt(list, numbers + 24), 0x0E010000u);
    EXPECT_EQ(bigAt(list, numbers + 28), 0x0E020000u);
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
    EXPECT_TRUE(second.isClosed());
    Host again(bench);
    EXPECT_TRUE(again.import());
    EXPECT_EQ(again.control({0x80, 0x08, 0, 0, 1}).data, Bytes{0}) << "not configured, as a new device";
    EXPECT_THAT(bench.log.str(), HasSubstr("1-1 unplug\n1-2 unplug\n1-1 detach\n1-2 detach\n1-1 attach\n"));
}

TEST_F(Usbip, GivesNoMoreOfADescriptorThanAskedForAndStallsWhatItDoesNotKnow) {
    ASSERT_TRUE(host.import());
    EXPECT_EQ(host.control({0x80, 0x06, 0x0100, 0, 8}).data.size(), 8u);
    host.send(submit(5, 0, kToHost, 64, wireSetup({0x80, 0x06, 0x0100, 0, 8})));
    EXPECT_EQ(host.reply(true).value_or(Reply{}).data.size(), 8u) << "whatever room the host has";
    EXPECT_EQ(host.control({0x80, 0x06, 0x0200, 0, 4096}).data, bench.models[0]->configurationDescriptor());

    for (const usb::SetupPacket &wrong : {usb::SetupPacket{0x80, 0x06, 0x0F00, 0, 5},
                                          {0x00, 0x09, 2, 0, 0},
                                          {0x01, 0x0B, 1, 1, 0},
                                          {0x01, 0x0B, 0, 2, 0},
                                          {0x02, 0x01, 0, 0x83, 0},
                                          {0xC0, 0x01, 0, 0, 1},
                                          {0xA1, 0x81, 0x0100, 7, 34}})
        EXPECT_EQ(host.control(wrong).status, kStall) << int{wrong.requestType} << ' ' << int{wrong.request};
}

TEST_F(Usbip, MovesTheCameraThatWasImportedAndLogsIt) {
    ASSERT_TRUE(host.import("1-2"));
    EXPECT_EQ(host.set(kPanTilt, kTerminal, kSomewhere).status, 0);
    EXPECT_EQ(bench.models[1]->target().pan, 360000);
    EXPECT_EQ(bench.models[1]->target().tilt, 108000);
    EXPECT_EQ(bench.models[0]->target().pan, 0);
    EXPECT_EQ(host.get(0x81, kPanTilt, kTerminal, 8).data, kSomewhere);
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
    const auto reason = [&] { return host.get(0x81, 0x0200, 0, 1).data; };
    EXPECT_EQ(reason(), Bytes{0});

    EXPECT_EQ(host.set(kPanTilt, kTerminal, Bytes{0, 0, 0, 0x7F, 0, 0, 0, 0}).status, kStall);
    EXPECT_EQ(reason(), Bytes{4}) << "out of range";
    EXPECT_EQ(reason(), Bytes{4}) << "asking does not change it";
    EXPECT_EQ(host.get(0x87, kPanTilt, kTerminal, 8).status, kStall);
    EXPECT_EQ(reason(), Bytes{7}) << "invalid request";
    EXPECT_EQ(host.get(0x81, 0x1300, kTerminal, 8).status, kStall);
    EXPECT_EQ(reason(), Bytes{6}) << "invalid control";
    EXPECT_EQ(host.get(0x81, kPanTilt, 0x0900, 8).status, kStall);
    EXPECT_EQ(reason(), Bytes{5}) << "invalid unit";
    EXPECT_EQ(host.set(0x0B00, kTerminal, Bytes{1, 0}).status, kStall);
    EXPECT_EQ(reason(), Bytes{2}) << "wrong state";
    EXPECT_EQ(host.set(kPanTilt, kTerminal, kSomewhere).status, 0);
    EXPECT_EQ(reason(), Bytes{0}) << "and none after a success";
}

TEST_F(Usbip, DoesNotDoWhatWasCancelledWhileItWasSlow) {
    bench.models[0]->setAnswerDelay(10s);
    ASSERT_TRUE(host.import());
    const usb::SetupPacket setup{0x21, 0x01, kPanTilt, kTerminal, 8};
    host.send(submit(5, 0, kToDevice, 8, wireSetup(setup)) + kSomewhere + unlink(6, 5));
    EXPECT_EQ(host.reply(false).value_or(Reply{}).status, kUnlinked);
    EXPECT_EQ(bench.models[0]->target().pan, 0);
    EXPECT_THAT(bench.log.str(),
                HasSubstr("SET_CUR interface=0 unit=1 selector=0x0d length=8 data= cancelled\n"));
}

TEST(UsbipFaults, GoneIsUnpluggedByAnOrderAndCanBePluggedInAgain) {
    CameraOptions options;
    ASSERT_TRUE(simulator::usbip::addFault("gone", options));
    Bench bench(options);
    Host host(bench);
    ASSERT_TRUE(host.import());
    EXPECT_EQ(host.get(0x81, kPanTilt, kTerminal, 8).data.size(), 8u);
    host.set(kPanTilt, kTerminal, kSomewhere);
    EXPECT_TRUE(host.isClosed());
    EXPECT_EQ(bench.models[0]->target().pan, 0);
    EXPECT_THAT(bench.log.str(), testing::EndsWith("1-1 unplug\n1-1 detach\n"));
    Host again(bench);
    EXPECT_TRUE(again.import());
    EXPECT_EQ(again.get(0x81, kPanTilt, kTerminal, 8).data.size(), 8u);
}

TEST_F(Usbip, AnswersSlowlyInOrderAndAfterTheDelay) {
    bench.models[0]->setAnswerDelay(60ms);
    ASSERT_TRUE(host.import());
    const auto start = std::chrono::steady_clock::now();
    host.send(submit(5, 0, kToHost, 8, wireSetup({0xA1, 0x81, kPanTilt, kTerminal, 8})) +
              submit(6, 0, kToHost, 18, wireSetup({0x80, 0x06, 0x0100, 0, 18})) + submit(7, 3, kToHost, 18) +
              submit(8, 0, kToHost, 8, wireSetup({0xA1, 0x81, kPanTilt, kTerminal, 8})));
    EXPECT_EQ(host.reply(true).value_or(Reply{}).sequence, 7u)
        << "other endpoints do not wait for the slow one";
    EXPECT_EQ(host.reply(true).value_or(Reply{}).sequence, 5u);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 60ms);
    EXPECT_EQ(host.reply(true).value_or(Reply{}).data, bench.models[0]->deviceDescriptor());
    EXPECT_EQ(host.reply(true).value_or(Reply{}).sequence, 8u);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 120ms) << "one after the other";
}

TEST_F(Usbip, TakesACommandThatComesInPieces) {
    ASSERT_TRUE(host.import());
    const Bytes whole =
        submit(5, 0, kToDevice, 8, wireSetup({0x21, 0x01, kPanTilt, kTerminal, 8})) + kSomewhere;
    for (const std::ptrdiff_t cut : {1, 20, 47, 48, 50, 55}) {
        host.send(Bytes(whole.begin(), whole.begin() + cut));
        ASSERT_TRUE(host.isQuiet(10ms)) << cut;
        EXPECT_EQ(bench.models[0]->count(1, 0x0D, 0x01), 0) << cut;
        host.send(Bytes(whole.begin() + cut, whole.end()));
        EXPECT_EQ(host.reply(false).value_or(Reply{}).status, 0) << cut;
        EXPECT_EQ(bench.models[0]->count(1, 0x0D, 0x01), 1) << cut;
        bench.models[0]->forgetTransfers();
    }
}

TEST_F(Usbip, NeverBelievesBothDirectionsOfOneCommand) {
    ASSERT_TRUE(host.import());
    host.send(submit(5, 0, kToHost, 8, wireSetup({0x21, 0x01, kPanTilt, kTerminal, 8})) +
              submit(6, 0, kToDevice, 4, wireSetup({0x21, 0x01, kPanTilt, kTerminal, 8})) + Bytes(4, 1) +
              submit(7, 0, kToDevice, 0, wireSetup({0xA1, 0x81, kPanTilt, kTerminal, 8})));
    for (const std::uint32_t sequence : {5u, 6u, 7u}) {
        const auto reply = host.reply(true);
        ASSERT_TRUE(reply);
        EXPECT_EQ(reply->sequence, sequence);
        EXPECT_EQ(reply->status, kStall);
    }
    EXPECT_EQ(bench.models[0]->target().pan, 0);
}

/// Input that is not USB/IP, or not for this camera: after an import or in place of one.
struct Nonsense {
    const char *name;
    bool imported;
    Bytes bytes;
};

Bytes manySubmits() {
    Bytes bytes;
    for (std::uint32_t i = 0; i < 600; ++i) bytes = std::move(bytes) + submit(i, 1, kToHost, 16);
    return bytes;
}

TEST(UsbipNonsense, EndsTheConnectionAndNothingElse) {
    const std::vector<Nonsense> rows{
        {"AnotherVersion", false, big({0x01068005, 0})},
        {"UnknownOperation", false, big({0x01118009, 0})},
        {"WebBrowser", false, {'G', 'E', 'T', ' ', '/', ' ', 'H', 'T', 'T', 'P'}},
        {"UnknownCommand", true, big({9, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0})},
        {"ReplyInstead", true, big({3, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0})},
        {"Direction", true, submit(1, 0, 2, 0)},
        {"Endpoint", true, submit(1, 16, kToHost, 0)},
        {"Gigabytes", true, submit(1, 0, kToDevice, 0x7FFFFFFF)},
        {"NegativeLength", true, submit(1, 2, kToHost, 0xFFFFFFFF)},
        {"Isochronous", true, big({1, 1, 1, 1, 2, 0, 512, 0, 8, 1, 0, 0})},
        {"TooMany", true, manySubmits()}};
    for (const Nonsense &row : rows) {
        SCOPED_TRACE(row.name);
        Bench bench;
        Host host(bench);
        ASSERT_TRUE(!row.imported || host.import());
        host.send(row.bytes);
        EXPECT_TRUE(host.isClosed());
        Host other(bench);
        EXPECT_TRUE(other.import());
        EXPECT_EQ(other.get(0x86, kPanTilt, kTerminal, 1).data.size(), 1u);
    }
}

TEST_F(Usbip, SurvivesEveryTruncationAndAnyDamage) {
    const Bytes whole = importRequest("1-1") +
                        submit(1, 0, kToDevice, 8, wireSetup({0x21, 0x01, kPanTilt, kTerminal, 8})) +
                        kSomewhere + unlink(2, 1);
    for (std::size_t size = 0; size < whole.size(); size += 3) {
        Host cut(bench);
        cut.send(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
        ASSERT_TRUE(bench.server->runOnce(1ms));
        ASSERT_TRUE(bench.server->runOnce(0ms));
    }
    std::mt19937 random(4711);
    for (int round = 0; round < 300; ++round) {
        Bytes damaged = whole;
        for (int i = 0; i < 3; ++i)
            damaged[40 + random() % (damaged.size() - 40)] = static_cast<std::uint8_t>(random());
        Host other(bench);
        other.send(damaged);
        ASSERT_TRUE(bench.server->runOnce(1ms));
        ASSERT_TRUE(bench.server->runOnce(0ms));
    }
    for (int i = 0; i < 10; ++i) ASSERT_TRUE(bench.server->runOnce(1ms));
    EXPECT_TRUE(host.import()) << "all those connections have let go of the camera";
}

TEST(UsbipCommandLine, TakesWhatItDocumentsAndNothingElse) {
    const auto read = [](std::vector<const char *> arguments) {
        return simulator::usbip::readCommandLine(arguments);
    };
    const auto usual = read({});
    ASSERT_TRUE(usual);
    EXPECT_EQ(usual->port, 3240);
    EXPECT_EQ(usual->cameras, 1u);
    const auto full = read({"--port", "0", "--cameras", "2", "--fault", "slow", "--model",
                            model::kRecords.back().ids.data(), "--fault", "ids", "--log", "x"});
    ASSERT_TRUE(full);
    EXPECT_EQ(full->port, 0);
    EXPECT_EQ(full->cameras, 2u);
    EXPECT_EQ(full->options.answerDelay, std::chrono::seconds(1));
    EXPECT_EQ(full->options.cameraTerminalId, 5);
    EXPECT_EQ(full->options.record.ids, model::kRecords.back().ids);
    EXPECT_EQ(full->logFile, "x");

    const std::pair<const char *, const char *> wrong[] = {
        {"--port", "65536"}, {"--port", "32x"},       {"--port", "-1"}, {"--cameras", "0"},
        {"--cameras", "5"},  {"--fault", "none"},     {"--log", ""},    {"--help", "me"},
        {"3240", "1"},       {"--model", "0000:0000"}};
    for (const auto &[option, value] : wrong) EXPECT_FALSE(read({option, value})) << option << value;
    EXPECT_FALSE(read({"--port"}));
}

}  // namespace
