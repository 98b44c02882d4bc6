#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "simulator/usbip/command_line.h"
#include "simulator/usbip_host.h"

namespace {

using namespace usbip_test;
using simulator::usbip::addFault;
using simulator::usbip::CommandLine;
using simulator::usbip::Faults;
using simulator::usbip::readCommandLine;

constexpr std::uint16_t kPanTilt = 0x0D00;
constexpr std::uint16_t kZoom = 0x0B00;
constexpr std::uint16_t kTerminal = 0x0100;

Faults faultsOf(std::initializer_list<const char *> names) {
    Faults faults;
    for (const char *const name : names) EXPECT_TRUE(addFault(name, faults)) << name;
    return faults;
}

TEST(UsbipFaults, RefuseOneKindOfRequestOnEveryControlAndNoOther) {
    const std::vector<std::pair<const char *, std::uint8_t>> reads{{"get-cur", 0x81}, {"get-min", 0x82},
                                                                   {"get-max", 0x83}, {"get-res", 0x84},
                                                                   {"get-def", 0x87}, {"get-info", 0x86}};
    for (const auto &[name, refused] : reads) {
        Bench bench(faultsOf({name}).options);
        Host host(bench);
        ASSERT_TRUE(host.import());
        for (const auto &[other, request] : reads) {
            const std::uint16_t size = request == 0x86 ? 1 : 2;
            const std::int32_t expected = request == refused ? -32 : 0;
            EXPECT_EQ(host.get(request, kZoom, kTerminal, size).status, expected) << name << ' ' << other;
            EXPECT_EQ(host.get(request, 0x0200, 0x0200, size).status, expected) << name << ' ' << other;
        }
        EXPECT_EQ(host.set(kZoom, kTerminal, {1, 0}).status, 0) << name;
    }
    Bench bench(faultsOf({"set-cur", "ids"}).options);
    Host host(bench);
    ASSERT_TRUE(host.import());
    EXPECT_EQ(host.set(kZoom, 0x0500, {1, 0}).status, -32);
    EXPECT_EQ(host.get(0x81, kZoom, 0x0500, 2).status, 0);
    EXPECT_EQ(bench.models[0]->target().zoom, 0);
}

TEST(UsbipFaults, FalsifyAnswers) {
    Bench bench(faultsOf({"short", "outside", "res-0"}).options);
    Host host(bench);
    ASSERT_TRUE(host.import());
    EXPECT_EQ(host.get(0x83, kZoom, kTerminal, 2).data, Bytes{0xE8}) << "half of 1000";
    EXPECT_EQ(host.get(0x86, kZoom, kTerminal, 1).data, Bytes{0x0B});
    EXPECT_EQ(host.get(0x84, kPanTilt, kTerminal, 8).data, Bytes(4, 0));
    EXPECT_EQ(host.set(kPanTilt, kTerminal, Bytes(8, 0)).status, 0);
    EXPECT_EQ(host.get(0x81, kPanTilt, kTerminal, 8).data, (Bytes{0x40, 0xE3, 0x09, 0x00})) << "648000";
    EXPECT_EQ(host.control({0x80, 0x06, 0x0100, 0, 18}).data.size(), 18u) << "descriptors are whole";
}

TEST(UsbipFaults, MoveUnitsAndInterfacesInDescriptorsAndRequestsAlike) {
    Bench bench(faultsOf({"ids", "interface"}).options);
    Host host(bench);
    ASSERT_TRUE(host.import());
    EXPECT_EQ(host.get(0x81, kZoom, 0x0501, 2).status, 0);
    EXPECT_EQ(host.get(0x81, 0x0200, 0x0601, 2).status, 0);
    EXPECT_EQ(host.get(0x81, 0x0100, 2, 34).data.size(), 34u);
    for (const std::uint16_t elsewhere : std::initializer_list<std::uint16_t>{0x0101, 0x0201, 0x0500, 0x0000})
        EXPECT_EQ(host.get(0x81, kZoom, elsewhere, 2).status, -32) << elsewhere;

    const Bytes block = bench.models[0]->videoControlDescriptors();
    EXPECT_EQ(block[12], 2u) << "the header names the streaming interface";
    EXPECT_EQ(block[13 + 3], 5u) << "the camera terminal's id";
    EXPECT_EQ(block[31 + 3], 6u) << "the processing unit's";
    EXPECT_EQ(block[31 + 4], 5u) << "and its source";
    const Bytes whole = bench.models[0]->configurationDescriptor();
    EXPECT_EQ(whole[4], 3u) << "interfaces";
    EXPECT_EQ(Bytes(whole.begin() + 9, whole.begin() + 17), (Bytes{9, 4, 0, 0, 0, 0xFF, 0, 0}));
}

TEST(UsbipFaults, LeaveOutTheHeader) {
    Bench bench(faultsOf({"no-header"}).options);
    const Bytes block = bench.models[0]->videoControlDescriptors();
    EXPECT_EQ(block[2], 0x02u) << "the camera terminal comes first";
    EXPECT_EQ(block.size(), 18u + 13 + 9);
    const Bytes whole = bench.models[0]->configurationDescriptor();
    EXPECT_EQ(whole[2] | whole[3] << 8, static_cast<int>(whole.size()));
}

TEST(UsbipCommandLine, TakesWhatItDocumentsAndNothingElse) {
    const auto read = [](std::vector<const char *> arguments) { return readCommandLine(arguments); };
    const auto usual = read({});
    ASSERT_TRUE(usual);
    EXPECT_EQ(usual->port, 3240);
    EXPECT_EQ(usual->cameras, 1u);
    const auto full =
        read({"--port", "0", "--cameras", "2", "--fault", "slow", "--fault", "ids", "--log", "x"});
    ASSERT_TRUE(full);
    EXPECT_EQ(full->port, 0);
    EXPECT_EQ(full->cameras, 2u);
    EXPECT_EQ(full->faults.answerDelay, std::chrono::seconds(1));
    EXPECT_EQ(full->faults.options.cameraTerminalId, 5);
    EXPECT_EQ(full->logFile, "x");

    for (const auto &wrong : std::vector<std::vector<const char *>>{{"--port"},
                                                                    {"--port", "65536"},
                                                                    {"--port", "32x"},
                                                                    {"--port", "-1"},
                                                                    {"--cameras", "0"},
                                                                    {"--cameras", "5"},
                                                                    {"--fault", "none"},
                                                                    {"--log", ""},
                                                                    {"--help", "me"},
                                                                    {"3240", "1"}})
        EXPECT_FALSE(read(wrong)) << wrong[0];
}

}  // namespace
