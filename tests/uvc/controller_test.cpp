#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "support/listed_devices.h"
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

    static std::shared_ptr<const usb::Device> camera(Ids ids) {
        return scripted::device(std::make_shared<Script>(), std::move(ids));
    }
    static std::shared_ptr<const usb::Device> notACamera(Ids ids, bool hasVideoControl) {
        auto script = std::make_shared<Script>();
        script->hasVideoControl = hasVideoControl;
        script->descriptors = scripted::cameraTerminal({1});  // and no header
        return scripted::device(script, std::move(ids));
    }
    static std::string names(const std::optional<std::vector<std::shared_ptr<UVCController>>> &controllers) {
        if (!controllers) return "nothing";
        std::string list;
        for (const auto &controller : *controllers) list += controller->deviceName().value_or("?");
        return list;
    }
};

TEST_F(Discovery, KeepsTheRegistrysOrderAndSkipsOtherDevices) {
    EXPECT_EQ(names(UVCController::uvcControllers()), "nothing");
    UVCController::useDeviceRegistry(support::listing(std::nullopt));
    EXPECT_EQ(names(UVCController::uvcControllers()), "nothing");
    const auto keyboard = notACamera({3, 4, 40, "k"}, false);
    const auto broken = notACamera({3, 5, 50, "b"}, true);
    UVCController::useDeviceRegistry(support::listing({{keyboard, broken}}));
    EXPECT_EQ(names(UVCController::uvcControllers()), "nothing");

    UVCController::useDeviceRegistry(
        support::listing({{camera({1, 9, 10, "z"}), keyboard, camera({1, 2, 20, "y"}), broken,
                           camera({1, 2, 30, "x"}), camera({3, 4, 40, "w"}), camera({{}, {}, {}, {}})}}));
    EXPECT_EQ(names(UVCController::uvcControllers()), "zyxw?");
    EXPECT_EQ(names(UVCController::uvcControllersWithIds([](auto, auto) { return true; })), "zyxw");
    EXPECT_EQ(names(UVCController::uvcControllersWithIds(
                  [](auto vendorId, auto productId) { return vendorId == 1 && productId == 2; })),
              "yx");
    EXPECT_EQ(UVCController::uvcControllerWithVendorId(1, 2)->deviceName(), "y");
    EXPECT_EQ(UVCController::uvcControllerWithLocationId(30)->deviceName(), "x");
    EXPECT_FALSE(UVCController::uvcControllerWithVendorId(1, 4));
    // The first match is no UVC device: there is no second try.
    EXPECT_FALSE(UVCController::uvcControllerWithVendorId(3, 4));
    EXPECT_FALSE(UVCController::uvcControllerWithLocationId(40));
    // A device without ids has not those that stand for "unknown".
    EXPECT_FALSE(UVCController::uvcControllerWithVendorId(0xFFFF, 0xFFFF));
    EXPECT_FALSE(UVCController::uvcControllerWithLocationId(0xFFFFFFFF));
    EXPECT_FALSE(UVCController::uvcControllerWithService(nullptr));
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
        tail(*UVCController::uvcControllerWithService(camera({{}, {}, {}, {}}))),
        " { \"(null)\"; vendor-id=0xffff; product-id=0xffff; location-id=0xffffffff; uvc-version: 0x0110 "
        "interface-index: 3 }");
}

TEST(Availability, OneBitMakesOneControlAvailable) {
    // bmControls as the USB Video Class gives them, by bit: the terminal's, then the unit's.
    std::istringstream terminal(
        "scanning-mode auto-exposure-mode auto-exposure-priority exposure-time-abs exposure-time-rel "
        "focus-abs focus-rel iris-abs iris-rel zoom-abs zoom-rel pan-tilt-abs pan-tilt-rel roll-abs roll-rel "
        "- - auto-focus privacy - - - - -");
    std::istringstream processing(
        "brightness contrast hue saturation sharpness gamma white-balance-temp white-balance-component "
        "backlight-compensation gain power-line-frequency auto-hue auto-white-balance-temp "
        "auto-white-balance-component digital-multiplier digital-multiplier-limit analog-video-standard "
        "analog-lock-status - - - - - -");
    for (std::size_t bit = 0; bit < 24; ++bit) {
        Bytes bitmap(3, 0);
        bitmap[bit / 8] = static_cast<std::uint8_t>(1u << (bit % 8));
        const Plugged plugged =
            pluggedWith({scripted::cameraTerminal(bitmap), scripted::processingUnit(bitmap)});
        std::set<std::string> available{"-"};
        for (const std::string &name : UVCController::controlStrings())
            if (!plugged.controller->controlIsNotAvailable(name)) available.insert(name);

        std::set<std::string> expected{"-"};
        for (std::istringstream *const names : {&terminal, &processing})
            expected.insert(*std::istream_iterator<std::string>(*names));
        EXPECT_EQ(available, expected) << "bit " << bit;
    }
}

TEST(Availability, WithoutBitmapEverythingKnownIsAvailableAndBeyondItNothing) {
    const Plugged plugged = pluggedWith({scripted::cameraTerminal({0xFF, 0xFF})});
    EXPECT_FALSE(plugged.controller->controlIsNotAvailable("analog-lock-status"));
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

    // A failure keeps the value and its byte order.
    plugged.script->answers.clear();
    plugged.script->acceptsSets = false;
    EXPECT_FALSE(plugged.controller->getValue(*zoom, kZoomAbs));
    EXPECT_FALSE(plugged.controller->setValue(*zoom, kZoomAbs));
    EXPECT_FALSE(plugged.controller->capabilities(capabilities, kZoomAbs));
    EXPECT_FALSE(plugged.controller->getValue(*zoom, 35) || plugged.controller->setValue(*zoom, 35));
    EXPECT_EQ(zoom->stringValue(), "300");
    EXPECT_FALSE(zoom->isSwappedToUSBEndian());
    EXPECT_EQ(capabilities, 0x1Fu);
    EXPECT_EQ(plugged.script->setups.size(), 6u);
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
