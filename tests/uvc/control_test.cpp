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

/// A healthy pan-tilt control, and a zoom that knows half of its range.
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
            {{kZoom, 0x86}, {0x01}},
            {{kZoom, 0x82}, {0, 0}},
        };
    }

    std::shared_ptr<UVCControl> control(const char *name) { return controller_->controlWithName(name); }

    std::shared_ptr<scripted::Script> script_ = std::make_shared<scripted::Script>();
    std::shared_ptr<UVCController> controller_ =
        UVCController::uvcControllerWithService(scripted::device(script_));
};

TEST_F(Control, AsksForEverythingButTheCurrentValueAtCreationAndSumsItUp) {
    const auto panTilt = control("pan-tilt-abs");
    ASSERT_TRUE(panTilt);
    std::vector<int> requests;
    for (const usb::SetupPacket &setup : script_->setups) requests.push_back(setup.request);
    EXPECT_EQ(requests, (std::vector<int>{0x86, 0x82, 0x83, 0x84, 0x87}));
    EXPECT_EQ(panTilt->summaryString(),
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
    char head[96];
    std::snprintf(head, sizeof head, "UVCControl[pan-tilt-abs]@%p { capabilities: 000000000703",
                  static_cast<const void *>(panTilt.get()));
    EXPECT_EQ(panTilt->description(),
              head + (", byte-size: 8; range: [" + panTilt->minimum()->description()) + "," +
                  panTilt->maximum()->description() + "]; step-size: " + panTilt->stepSize()->description() +
                  "; default-value: " + panTilt->defaultValue()->description() + " }");
}

TEST_F(Control, HalfARangeIsNoneAndGetInfoDecidesReadingAndWriting) {
    const auto zoom = control("zoom-abs");
    EXPECT_TRUE(zoom->supportsGetValue());
    EXPECT_FALSE(zoom->supportsSetValue());
    EXPECT_EQ(zoom->summaryString(),
              "zoom-abs {\n  type-description: {\n    single value, unsigned 16-bit integer\n  },\n}");
    EXPECT_FALSE(zoom->setCurrentValueFromCString("0.5", 0));
    EXPECT_TRUE(zoom->setCurrentValueFromCString("40000", 0));

    script_->answers[{kPanTilt, 0x86}] = {0xFE};
    script_->answers.erase({kPanTilt, 0x82});
    script_->setups.clear();
    const auto panTilt = control("pan-tilt-abs");
    EXPECT_FALSE(panTilt->supportsGetValue());
    EXPECT_TRUE(panTilt->supportsSetValue());
    EXPECT_FALSE(panTilt->hasRange() || panTilt->minimum() || panTilt->maximum());
    EXPECT_EQ(script_->setups.size(), 4u) << "the maximum of a range without minimum is not asked for";
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
    EXPECT_EQ(value->stringValue(), "{pan=-2,tilt=9}");
}

TEST_F(Control, TextIsSentOnlyByTheWriteAndTheDefaultLeavesItAlone) {
    const auto panTilt = control("pan-tilt-abs");
    const std::size_t before = script_->setups.size();
    EXPECT_TRUE(panTilt->setCurrentValueFromCString("{99999,-13}", 0));
    EXPECT_EQ(script_->setups.size(), before);
    EXPECT_TRUE(panTilt->resetToDefaultValue());
    EXPECT_EQ(script_->lastSent, (Bytes{20, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(panTilt->writeFromCurrentValue());
    EXPECT_EQ(script_->lastSent, (Bytes{0xD0, 0x02, 0, 0, 0xF6, 0xFF, 0xFF, 0xFF}));  // 720, -10
    script_->acceptsSets = false;
    EXPECT_FALSE(panTilt->writeFromCurrentValue() || panTilt->resetToDefaultValue());
    EXPECT_FALSE(control("zoom-abs")->resetToDefaultValue());
}

}  // namespace
