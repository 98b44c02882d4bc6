#include "ptz/ptz_functions.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "support/simulated_camera.h"

namespace {

using simulator::CameraOptions;
using support::SimulatedCamera;
using Bytes = std::vector<std::uint8_t>;

/// The six functions, each with its answer as a text; "-" for nothing.
std::string (*const kSix[])() = {
    [] { return getPanTiltPosition().value_or("-"); },
    [] { return getZoomPosition().value_or("-"); },
    [] { return getPanTiltData().value_or("-"); },
    [] { return getZoomData().value_or("-"); },
    [] { return std::string(setPanTiltPosition(3600, -3600) ? "moved" : "refused"); },
    [] { return std::string(setZoomPosition(7) ? "moved" : "refused"); }};

/// What these functions answer, and then what they have printed.
std::string heard(std::span<std::string (*const)()> functions) {
    testing::internal::CaptureStderr();
    std::string answers;
    for (const auto function : functions) answers += (answers.empty() ? "" : " ") + function();
    return answers + "\n" + testing::internal::GetCapturedStderr();
}

/// Without one kind of request to both controls.
CameraOptions without(std::uint8_t request) {
    CameraOptions options;
    options.refused = {{1, support::kPanTiltAbs, request}, {1, support::kZoomAbs, request}};
    return options;
}

TEST(PtzFunctions, AnswerAndSayWhatIsWrong) {
    CameraOptions noZoom;
    noZoom.hasZoomAbs = false;
    CameraOptions otherProduct;
    otherProduct.record.productId ^= 1;
    // The first digit of the maximum pan is missing on purpose.
    const std::string data = "-612000,12000,3600,0,-108000,324000,3600,0";
    const std::string panTilt = "pan-tilt-abs\n";
    const std::string zoom = "zoom-abs\n";
    const std::string cannotRead = "ERROR:  unable to read value of control: ";
    const std::string cannotWrite = "ERROR:  unable to write new value to control ";
    const std::string noControl = "ERROR:  invalid control name: ";
    const std::string neither = noControl + panTilt + noControl + zoom;

    const std::pair<CameraOptions, std::string> rows[] = {
        {{}, "0,0 0 " + data + " 0,1000,1,0 moved moved\n"},
        {without(0x82), "0,0 0 ,,3600,0,,,3600,0 ,,1,0 moved moved\n"},
        {without(0x86), "AAAAAAAAA AAAAAAAAA - - refused refused\n" + neither + neither + neither},
        {without(support::kGetCur), "AAAAAAAAA AAAAAAAAA " + data + " 0,1000,1,0 moved moved\n" + cannotRead +
                                        panTilt + cannotRead + zoom},
        {without(support::kSetCur),
         "0,0 0 " + data + " 0,1000,1,0 refused refused\n" + cannotWrite + panTilt + cannotWrite + zoom},
        {noZoom, "0,0 AAAAAAAAA " + data + " - moved refused\n" + noControl + zoom + noControl + zoom +
                     noControl + zoom},
        {otherProduct, "- - - - refused refused\n"}};
    for (const auto &[options, expected] : rows) {
        SimulatedCamera bench(options);
        EXPECT_EQ(heard(kSix), expected);
    }
}

/// What is heard of one of the six, and how many orders came; nothing stays open.
std::string heard(const SimulatedCamera &bench, std::size_t function) {
    const std::string answer = heard(std::span(kSix).subspan(function, 1));
    EXPECT_EQ(bench.bus->openHandles(), 0);
    return answer + std::to_string(bench.panTiltSets() + bench.zoomSets());
}

/// However a transfer breaks, a function ends as with a camera that refuses that request.
TEST(PtzFunctions, EndAsStatedWhicheverTransferBreaksInWhicheverWay) {
    using enum usb::Outcome;
    int situations = 0;
    for (std::size_t function = 0; function < std::size(kSix); ++function) {
        const SimulatedCamera whole;
        const std::string asUsual = heard(whole, function);
        const auto requests = whole.camera->transfers();
        for (std::size_t number = 0; number < requests.size(); ++number, situations += 6) {
            for (const usb::Outcome way : {refused, timedOut, disconnected, denied, busy, failed}) {
                CameraOptions refusing;
                for (std::size_t other = number; other < requests.size(); ++other) {
                    const usb::SetupPacket &setup = requests[other].setup;
                    if (other == number || way == disconnected)
                        refusing.refused.insert(
                            {1, static_cast<std::uint8_t>(setup.value >> 8), setup.request});
                }
                const std::string expected = heard(SimulatedCamera(refusing), function);
                const SimulatedCamera broken;
                broken.bus->answerRequestWith(broken.camera, number, way);
                EXPECT_EQ(heard(broken, function), expected) << "function " << function << ", transfer "
                                                             << number << ", way " << static_cast<int>(way);
            }
        }
        const SimulatedCamera staysOpen;
        staysOpen.bus->answerCloseWith(staysOpen.camera, failed);
        EXPECT_EQ(heard(staysOpen, function), asUsual);
        const std::string expected = heard(SimulatedCamera(without(0x86)), function);
        for (const usb::Outcome way : {disconnected, denied, busy, failed}) {
            const SimulatedCamera shut;
            shut.bus->answerOpenWith(shut.camera, way);
            EXPECT_EQ(heard(shut, function), expected) << "function " << function;
            EXPECT_TRUE(shut.camera->transfers().empty());
        }
    }
    EXPECT_EQ(situations, 6 * (4 * 6 + 2 * 5));
}

TEST(PtzFunctions, SetSendsOneRequestClampedAndRoundedToTheCamerasRange) {
    SimulatedCamera bench;
    ASSERT_TRUE(setPanTiltPosition(-5000, 99999999));
    ASSERT_EQ(bench.panTiltSets(), 1);
    const auto &set = bench.camera->transfers().back();
    EXPECT_EQ(set.setup, (usb::SetupPacket{0x21, 0x01, 0x0D00, 0x0100, 8}));
    EXPECT_EQ(set.data, (Bytes{0xF0, 0xF1, 0xFF, 0xFF, 0xA0, 0xF1, 0x04, 0x00}));  // -3600, 324000

    for (const auto &[zoom, sent] :
         {std::pair(60000, Bytes{0xE8, 3}), std::pair(-5, Bytes{0xE8, 3}), std::pair(65536, Bytes{0, 0})}) {
        bench.camera->forgetTransfers();
        ASSERT_TRUE(setZoomPosition(zoom));
        ASSERT_EQ(bench.zoomSets(), 1);
        EXPECT_EQ(bench.camera->transfers().back().data, sent) << zoom;
    }
    EXPECT_EQ(bench.bus->openHandles(), 0);
}

TEST(PtzFunctions, TheLastListedCameraOfAnyKnownModelMovesAndNoOther) {
    for (const model::Record &record : model::kRecords) {
        SimulatedCamera bench;
        CameraOptions options;
        options.record = record;
        const auto last = std::make_shared<simulator::CameraModel>(options);
        options.record.vendorId ^= 1;
        const auto other = std::make_shared<simulator::CameraModel>(options);
        bench.bus->plug(last, 1, {4});
        bench.bus->plug(other, 2, {1});

        ASSERT_TRUE(setZoomPosition(record.zoom.maximum)) << record.name;
        EXPECT_EQ(last->target().zoom, record.zoom.maximum);
        EXPECT_TRUE(bench.camera->transfers().empty());
        EXPECT_TRUE(other->transfers().empty());
    }
}

}  // namespace
