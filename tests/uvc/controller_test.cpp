#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "uvc/scripted_device.h"
#include "uvc/uvc_control.h"
#include "uvc/uvc_controller.h"

namespace {

using scripted::Bytes;
using scripted::Ids;
using scripted::Script;

constexpr std::size_t kZoomAbs = 10;
constexpr std::size_t kPanTiltAbs = 12;
constexpr std::size_t kBrightness = 18;

struct Plugged {
    std::shared_ptr<Script> script = std::make_shared<Script>();
    std::shared_ptr<UVCController> controller =
        UVCController::uvcControllerWithService(scripted::device(script));
};

Plugged pluggedWith(const std::vector<Bytes> &units) {
    auto script = std::make_shared<Script>();
    script->descriptors = scripted::withHeader(units);
    return {script, UVCController::uvcControllerWithService(scripted::device(script))};
}

class Discovery : public testing::Test {
 protected:
    ~Discovery() override { UVCController::useDeviceRegistry(nullptr); }

    static std::shared_ptr<Script> camera() { return std::make_shared<Script>(); }
    static std::shared_ptr<Script> keyboard() {
        auto script = camera();
        script->hasVideoControl = false;
        return script;
    }
};

TEST_F(Discovery, KeepsTheRegistrysOrderAndSkipsOtherDevicesAndIsNeverAnEmptyList) {
    const auto locations = [](const auto &controllers) {
        std::vector<std::uint32_t> list;
        for (const auto &controller : *controllers) list.push_back(controller->locationId());
        return list;
    };
    EXPECT_FALSE(UVCController::uvcControllers());
    UVCController::useDeviceRegistry(scripted::registry(std::nullopt));
    EXPECT_FALSE(UVCController::uvcControllers());
    const auto noHeader = camera();
    noHeader->descriptors = scripted::cameraTerminal({1});
    UVCController::useDeviceRegistry(
        scripted::registry({{scripted::device(keyboard()), scripted::device(noHeader)}}));
    EXPECT_FALSE(UVCController::uvcControllers());

    UVCController::useDeviceRegistry(scripted::registry(
        {{scripted::device(camera(), {1, 2, 30, "c"}), scripted::device(keyboard(), {1, 2, 20, "b"}),
          scripted::device(camera(), {1, 3, 10, "a"}), scripted::device(camera(), {{}, {}, {}, {}})}}));
    EXPECT_EQ(locations(UVCController::uvcControllers()), (std::vector<std::uint32_t>{30, 10, 0xFFFFFFFF}));
    const auto every = UVCController::uvcControllersWithIds([](auto, auto) { return true; });
    EXPECT_EQ(locations(every), (std::vector<std::uint32_t>{30, 10})) << "unknown ids are nobody's";
    EXPECT_EQ(locations(UVCController::uvcControllersWithIds(
                  [](auto vendor, auto product) { return vendor == 1 && product == 3; })),
              std::vector<std::uint32_t>{10});
}

TEST_F(Discovery, ByIdsTakesTheFirstMatchOnly) {
    UVCController::useDeviceRegistry(scripted::registry(
        {{scripted::device(camera(), {1, 9, 10, "a"}), scripted::device(camera(), {1, 2, 20, "b"}),
          scripted::device(camera(), {1, 2, 30, "c"}), scripted::device(keyboard(), {3, 4, 40, "d"}),
          scripted::device(camera(), {3, 4, 40, "e"}), scripted::device(camera(), {{}, {}, {}, {}})}}));
    EXPECT_EQ(UVCController::uvcControllerWithVendorId(1, 2)->deviceName(), "b");
    EXPECT_EQ(UVCController::uvcControllerWithLocationId(30)->deviceName(), "c");
    EXPECT_FALSE(UVCController::uvcControllerWithVendorId(1, 4));
    // The first match is no UVC device: there is no second try.
    EXPECT_FALSE(UVCController::uvcControllerWithVendorId(3, 4));
    EXPECT_FALSE(UVCController::uvcControllerWithLocationId(40));
    // A device without ids has not those that stand for "unknown".
    EXPECT_FALSE(UVCController::uvcControllerWithVendorId(0xFFFF, 0xFFFF));
    EXPECT_FALSE(UVCController::uvcControllerWithLocationId(0xFFFFFFFF));
}

TEST_F(Discovery, DescribesItselfAndUnknownIdsAsAllOnes) {
    const auto tail = [](const UVCController &controller) {
        const std::string text = controller.description();
        return text.substr(text.find(' '));
    };
    const Plugged plugged;
    plugged.controller->setIsInterfaceOpen(true);
    EXPECT_EQ(tail(*plugged.controller),
              " { \"Sala\"; vendor-id=0x1234; product-id=0x56ab; location-id=0x01200000; uvc-version: 0x0110 "
              "interface-index: 3 ; is-open }");
    EXPECT_EQ(
        tail(*UVCController::uvcControllerWithService(scripted::device(camera(), {{}, {}, {}, {}}))),
        " { \"(null)\"; vendor-id=0xffff; product-id=0xffff; location-id=0xffffffff; uvc-version: 0x0110 "
        "interface-index: 3 }");
}

std::vector<std::string> words(const std::string &text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

TEST(Availability, OneBitMakesOneControlAvailable) {
    // Bit numbers of bmControls as the USB Video Class gives them, by bit: the terminal's, then the unit's.
    const std::vector<std::string> terminal = words(
        "scanning-mode auto-exposure-mode auto-exposure-priority exposure-time-abs exposure-time-rel "
        "focus-abs focus-rel iris-abs iris-rel zoom-abs zoom-rel pan-tilt-abs pan-tilt-rel roll-abs roll-rel "
        "- - auto-focus privacy");
    const std::vector<std::string> processing = words(
        "brightness contrast hue saturation sharpness gamma white-balance-temp white-balance-component "
        "backlight-compensation gain power-line-frequency auto-hue auto-white-balance-temp "
        "auto-white-balance-component digital-multiplier digital-multiplier-limit analog-video-standard "
        "analog-lock-status");
    for (std::size_t bit = 0; bit < 24; ++bit) {
        Bytes bitmap(3, 0);
        bitmap[bit / 8] = static_cast<std::uint8_t>(1u << (bit % 8));
        const Plugged plugged =
            pluggedWith({scripted::cameraTerminal(bitmap), scripted::processingUnit(bitmap)});
        std::set<std::string> available;
        for (const std::string &name : UVCController::controlStrings())
            if (!plugged.controller->controlIsNotAvailable(name)) available.insert(name);

        std::set<std::string> expected;
        if (bit < terminal.size() && terminal[bit] != "-") expected.insert(terminal[bit]);
        if (bit < processing.size()) expected.insert(processing[bit]);
        EXPECT_EQ(available, expected) << "bit " << bit;
    }
}

TEST(Availability, WithoutBitmapEverythingKnownIsAvailableAndBeyondItNothing) {
    const Plugged plugged = pluggedWith({scripted::cameraTerminal({0xFF, 0xFF})});
    EXPECT_FALSE(plugged.controller->controlIsNotAvailable("analog-lock-status"));
    EXPECT_FALSE(plugged.controller->controlIsNotAvailable("roll-rel"));
    EXPECT_TRUE(plugged.controller->controlIsNotAvailable("auto-focus"));
    EXPECT_TRUE(plugged.controller->controlIsNotAvailable("privacy"));
    EXPECT_TRUE(plugged.controller->controlIsNotAvailable("Zoom-Abs"));
}

TEST(Requests, SetupPacketsByteForByte) {
    Plugged plugged;
    plugged.script->answers = {{{0x0B, 0x81}, {0x2C, 0x01}}, {{0x02, 0x86}, {0x1F}}};
    const auto zoom = UVCValue::uvcValueWithType(uvc::controlType(kZoomAbs));
    const auto panTilt = UVCValue::uvcValueWithType(uvc::controlType(kPanTiltAbs));
    ASSERT_TRUE(panTilt->scanCString("{-3600,7200}", 0));
    std::uint32_t capabilities = 0xFFFFFFFF;

    EXPECT_TRUE(plugged.controller->getValue(*zoom, kZoomAbs));
    EXPECT_TRUE(plugged.controller->setValue(*panTilt, kPanTiltAbs));
    EXPECT_TRUE(plugged.controller->capabilities(capabilities, kBrightness));

    EXPECT_EQ(plugged.script->setups, (std::vector<usb::SetupPacket>{{0xA1, 0x81, 0x0B00, 0x0103, 2},
                                                                     {0x21, 0x01, 0x0D00, 0x0103, 8},
                                                                     {0xA1, 0x86, 0x0200, 0x0203, 1}}));
    EXPECT_EQ(zoom->stringValue(), "300");
    EXPECT_EQ(plugged.script->lastSent, (Bytes{0xF0, 0xF1, 0xFF, 0xFF, 0x20, 0x1C, 0x00, 0x00}));
    EXPECT_EQ(capabilities, 0x1Fu);
}

TEST(Requests, FailureKeepsTheValueAndItsByteOrder) {
    Plugged plugged;
    plugged.script->acceptsSets = false;
    const auto zoom = UVCValue::uvcValueWithType(uvc::controlType(kZoomAbs));
    ASSERT_TRUE(zoom->scanCString("77", 0));
    std::uint32_t capabilities = 5;
    EXPECT_FALSE(plugged.controller->getValue(*zoom, kZoomAbs));
    EXPECT_FALSE(plugged.controller->setValue(*zoom, kZoomAbs));
    EXPECT_FALSE(plugged.controller->capabilities(capabilities, kZoomAbs));
    EXPECT_FALSE(plugged.controller->getValue(*zoom, 35));
    EXPECT_EQ(zoom->stringValue(), "77");
    EXPECT_FALSE(zoom->isSwappedToUSBEndian());
    EXPECT_EQ(capabilities, 5u);
    EXPECT_EQ(plugged.script->setups.size(), 3u);
}

TEST(Requests, EachOpensAndClosesUnlessHeldOpenOrThePlatformRefuses) {
    Plugged plugged;
    const auto &script = *plugged.script;
    std::uint32_t capabilities = 0;
    EXPECT_FALSE(plugged.controller->capabilities(capabilities, kZoomAbs));
    EXPECT_EQ(std::pair(script.opens, script.closes), std::pair(1, 1));
    plugged.controller->setIsInterfaceOpen(true);
    plugged.controller->setIsInterfaceOpen(true);
    EXPECT_FALSE(plugged.controller->capabilities(capabilities, kZoomAbs));
    EXPECT_EQ(std::pair(script.opens, script.closes), std::pair(2, 1));
    plugged.controller->setIsInterfaceOpen(false);
    EXPECT_EQ(script.closes, 2);

    plugged.script->answers = {{{0x0B, 0x86}, {3}}};
    plugged.script->openOutcome = usb::Outcome::busy;
    EXPECT_FALSE(plugged.controller->capabilities(capabilities, kZoomAbs));
    EXPECT_EQ(script.setups.size(), 2u);
    EXPECT_FALSE(plugged.controller->isInterfaceOpen());
    plugged.script->openOutcome = usb::Outcome::done;
    plugged.script->closeOutcome = usb::Outcome::failed;
    EXPECT_TRUE(plugged.controller->capabilities(capabilities, kZoomAbs));  // the request itself was answered
    EXPECT_TRUE(plugged.controller->isInterfaceOpen());
}

TEST(ControlCache, RemembersControlsAndFailuresButNotUnknownNames) {
    Plugged plugged = pluggedWith({scripted::cameraTerminal({0, 0x0A})});  // zoom-abs and pan-tilt-abs
    plugged.script->answers = {{{0x0B, 0x86}, {3}}};

    const auto zoom = plugged.controller->controlWithName("zoom-abs");
    ASSERT_TRUE(zoom);
    const std::size_t sent = plugged.script->setups.size();
    EXPECT_EQ(plugged.controller->controlWithName("zoom-abs"), zoom);
    EXPECT_EQ(plugged.script->setups.size(), sent);

    EXPECT_FALSE(plugged.controller->controlWithName("pan-tilt-abs"));  // does not answer GET_INFO
    plugged.script->answers[{0x0D, 0x86}] = {3};
    EXPECT_FALSE(plugged.controller->controlWithName("pan-tilt-abs"));
    EXPECT_EQ(plugged.script->setups.size(), sent + 1);

    EXPECT_FALSE(plugged.controller->controlWithName("focus-abs"));  // bit not set
    EXPECT_FALSE(plugged.controller->controlWithName("Zoom-Abs"));
    EXPECT_EQ(plugged.script->setups.size(), sent + 1);
}

TEST(ControllerLifetime, ControlKeepsTheDeviceAndTheLastUserClosesIt) {
    Plugged plugged;
    plugged.script->answers = {{{0x0B, 0x86}, {3}}, {{0x0B, 0x81}, {7, 0}}};
    auto control = plugged.controller->controlWithName("zoom-abs");
    plugged.controller->setIsInterfaceOpen(true);
    const int closes = plugged.script->closes;
    plugged.controller.reset();
    EXPECT_EQ(control->currentValue()->stringValue(), "7");
    EXPECT_EQ(plugged.script->closes, closes);
    control.reset();
    EXPECT_EQ(plugged.script->closes, closes + 1);
}

}  // namespace
