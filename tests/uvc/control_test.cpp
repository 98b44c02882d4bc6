#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "uvc/scripted_device.h"
#include "uvc/uvc_control.h"
#include "uvc/uvc_controller.h"

namespace {

using scripted::Bytes;

constexpr std::uint8_t kPanTilt = 0x0D;
constexpr std::uint8_t kZoom = 0x0B;

/// A healthy pan-tilt-zoom camera.
class Control : public testing::Test {
 protected:
    Control() {
        script_->answers = {
            {{kPanTilt, 0x86}, {0x03}},
            {{kPanTilt, 0x82}, {0x30, 0xFD, 0xFF, 0xFF, 0x98, 0xFE, 0xFF, 0xFF}},  // -720, -360
            {{kPanTilt, 0x83}, {0xD0, 0x02, 0, 0, 0x68, 0x01, 0, 0}},              // 720, 360
            {{kPanTilt, 0x84}, {10, 0, 0, 0, 5, 0, 0, 0}},
            {{kPanTilt, 0x87}, {20, 0, 0, 0, 0, 0, 0, 0}},
            {{kPanTilt, 0x81}, {0xFF, 0xFF, 0xFF, 0xFF, 9, 0, 0, 0}},
            {{kZoom, 0x86}, {0x03}},
            {{kZoom, 0x82}, {0, 0}},
            {{kZoom, 0x81}, {0x2C, 0x01}},
        };
    }

    std::shared_ptr<UVCControl> control(const char *name) {
        if (!controller_) controller_ = UVCController::uvcControllerWithService(scripted::device(script_));
        return controller_->controlWithName(name);
    }

    std::shared_ptr<scripted::Script> script_ = std::make_shared<scripted::Script>();
    std::shared_ptr<UVCController> controller_;
};

TEST_F(Control, AsksForEverythingButTheCurrentValueAtCreation) {
    const auto panTilt = control("pan-tilt-abs");
    ASSERT_TRUE(panTilt);
    std::vector<int> requests;
    for (const usb::SetupPacket &setup : script_->setups) requests.push_back(setup.request);
    EXPECT_EQ(requests, (std::vector<int>{0x86, 0x82, 0x83, 0x84, 0x87}));
    EXPECT_TRUE(panTilt->supportsGetValue() && panTilt->supportsSetValue());
    EXPECT_TRUE(panTilt->hasRange() && panTilt->hasStepSize() && panTilt->hasDefaultValue());
    EXPECT_EQ(panTilt->minimum()->stringValue(), "{pan=-720,tilt=-360}");
    EXPECT_FALSE(panTilt->minimum()->isSwappedToUSBEndian());
}

TEST_F(Control, GetInfoBitsDecideReadingAndWriting) {
    script_->answers[{kZoom, 0x86}] = {0x01};
    EXPECT_TRUE(control("zoom-abs")->supportsGetValue());
    EXPECT_FALSE(control("zoom-abs")->supportsSetValue());
    script_->answers[{kPanTilt, 0x86}] = {0xFE};
    EXPECT_FALSE(control("pan-tilt-abs")->supportsGetValue());
    EXPECT_TRUE(control("pan-tilt-abs")->supportsSetValue());
    EXPECT_FALSE(control("focus-abs"));
}

TEST_F(Control, HalfARangeIsNone) {
    const auto zoom = control("zoom-abs");  // answers GET_MIN, not GET_MAX
    EXPECT_FALSE(zoom->hasRange());
    EXPECT_FALSE(zoom->minimum());
    EXPECT_FALSE(zoom->maximum());
    EXPECT_FALSE(zoom->stepSize());
    EXPECT_FALSE(zoom->setCurrentValueFromCString("0.5", 0));
    EXPECT_TRUE(zoom->setCurrentValueFromCString("40000", 0));

    script_->answers.erase({kPanTilt, 0x82});
    EXPECT_FALSE(control("pan-tilt-abs")->hasRange());
    EXPECT_FALSE(control("pan-tilt-abs")->maximum());
    for (const usb::SetupPacket &setup : script_->setups)
        EXPECT_FALSE(setup.request == 0x83 && setup.value == 0x0D00)
            << "the maximum of a range without minimum";
}

TEST_F(Control, ReadsAnewAndKeepsTheBufferOnFailure) {
    const auto panTilt = control("pan-tilt-abs");
    const auto value = panTilt->currentValue();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->stringValue(), "{pan=-1,tilt=9}");

    script_->answers[{kPanTilt, 0x81}][0] = 0xFE;
    EXPECT_EQ(panTilt->currentValue()->stringValue(), "{pan=-2,tilt=9}");

    script_->answers.erase({kPanTilt, 0x81});
    EXPECT_FALSE(panTilt->currentValue());
    EXPECT_FALSE(panTilt->readIntoCurrentValue());
    EXPECT_EQ(value->stringValue(), "{pan=-2,tilt=9}");
}

TEST_F(Control, TextIsClampedSteppedAndSentOnlyByTheWrite) {
    const auto panTilt = control("pan-tilt-abs");
    const std::size_t before = script_->setups.size();
    EXPECT_TRUE(panTilt->setCurrentValueFromCString("{99999,-13}", 0));
    EXPECT_EQ(script_->setups.size(), before);
    EXPECT_TRUE(panTilt->writeFromCurrentValue());
    EXPECT_EQ(script_->lastSent, (Bytes{0xD0, 0x02, 0, 0, 0xF6, 0xFF, 0xFF, 0xFF}));  // 720, -10
    script_->acceptsSets = false;
    EXPECT_FALSE(panTilt->writeFromCurrentValue());
}

TEST_F(Control, ResetSendsTheDefaultAndLeavesTheBuffer) {
    const auto panTilt = control("pan-tilt-abs");
    EXPECT_TRUE(panTilt->setCurrentValueFromCString("{100,100}", 0));
    EXPECT_TRUE(panTilt->resetToDefaultValue());
    EXPECT_EQ(script_->lastSent, (Bytes{20, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(panTilt->writeFromCurrentValue());
    EXPECT_EQ(script_->lastSent, (Bytes{100, 0, 0, 0, 100, 0, 0, 0}));

    const auto zoom = control("zoom-abs");
    const std::size_t before = script_->setups.size();
    EXPECT_FALSE(zoom->resetToDefaultValue());
    EXPECT_EQ(script_->setups.size(), before);
}

TEST_F(Control, SummaryIsLaidOutForCutting) {
    EXPECT_EQ(control("pan-tilt-abs")->summaryString(),
              "pan-tilt-abs {\n"
              "  type-description: {\n"
              "    signed 32-bit integer            pan;\n"
              "    signed 32-bit integer            tilt;\n"
              "  },\n"
              "  minimum: {pan=-720,tilt=-360}\n"
              "  maximum: {pan=720,tilt=360}\n"
              "  step-size: {pan=10,tilt=5}\n"
              "  default-value: {pan=20,tilt=0}\n"
              "}");
    EXPECT_EQ(control("zoom-abs")->summaryString(),
              "zoom-abs {\n  type-description: {\n    single value, unsigned 16-bit integer\n  },\n}");
}

TEST_F(Control, DescriptionShowsCapabilitiesAndWhatTheDeviceReported) {
    const auto head = [](const UVCControl &described) {
        char text[64];
        std::snprintf(text, sizeof text, "]@%p { capabilities: ", static_cast<const void *>(&described));
        return "UVCControl[" + described.controlName() + text;
    };
    const auto panTilt = control("pan-tilt-abs");
    EXPECT_EQ(panTilt->description(),
              head(*panTilt) + "000000000703, byte-size: 8; range: [" + panTilt->minimum()->description() +
                  "," + panTilt->maximum()->description() +
                  "]; step-size: " + panTilt->stepSize()->description() +
                  "; default-value: " + panTilt->defaultValue()->description() + " }");
    const auto zoom = control("zoom-abs");
    EXPECT_EQ(zoom->description(), head(*zoom) + "000000000003, byte-size: 2 }");
}

}  // namespace
