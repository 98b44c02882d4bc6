// What a check asks, what it leaves alone, and when it stops asking.
#include "selfcheck/examination.h"

#include <chrono>

#include "selfcheck/watched_device.h"
#include "selfcheck_bench.h"

namespace {

using namespace std::chrono_literals;
using support::kGetCur;
using support::kPanTiltAbs;
using support::kSetCur;
using support::kTerminal;
using support::kZoomAbs;
using usb::Outcome;
using Stage = selfcheck::OrderFacts::Stage;

constexpr std::uint8_t kGet = 0xA1;
constexpr usb::SetupPacket kSetPanTilt{0x21, kSetCur, kPanTiltAbs << 8, kTerminal << 8, 8};
constexpr usb::SetupPacket kSetZoom{0x21, kSetCur, kZoomAbs << 8, kTerminal << 8, 2};

class ExaminationTest : public SelfcheckBench {
 protected:
    std::size_t asked() { return camera().transfers().size(); }
};

TEST_F(ExaminationTest, OnlyGetsReachTheCameraAtMostTwoAStepAndNothingStaysOpen) {
    std::size_t before = 0;
    const auto facts = examine([&] { EXPECT_LE(asked() - std::exchange(before, asked()), 2U); });
    ASSERT_EQ(asked(), 12U);
    EXPECT_EQ(camera().transfers().front().setup.request, kGetCur) << "what shows a slow camera comes first";
    for (const auto &transfer : camera().transfers()) EXPECT_EQ(transfer.setup.requestType, kGet);
    EXPECT_EQ(bus().openHandles(), 0);
    EXPECT_FALSE(facts.givenUp);
}

TEST_F(ExaminationTest, AWatchedDeviceDoesNotEvenForwardASet) {
    const selfcheck::WatchedDevice watched(bus().devices()->front(),
                                           selfcheck::WatchedDevice::Orders::refused, 1h);
    const auto interface = watched.videoControl();
    ASSERT_EQ(interface->open(), Outcome::done);
    std::vector<std::uint8_t> zoom{1, 0};
    EXPECT_EQ(interface->controlRequest(kSetZoom, zoom), Outcome::failed);
    EXPECT_EQ(asked(), 0U);
}

TEST_F(ExaminationTest, ADeadCameraIsNotAskedAgain) {
    for (const std::size_t answers : {0U, 1U, 6U, 8U}) {
        plug({});
        const auto facts = examine([&] {
            if (asked() == answers) camera().setAnswerDelay(1h);
        });
        EXPECT_EQ(facts.panTilt.failures.size() + facts.zoom.failures.size(), 1U);
        EXPECT_EQ(facts.givenUp, Outcome::timedOut);
        EXPECT_TRUE(facts.store.hasDocuments) << "the store is looked at all the same";
    }
    plug({}).unplugAfter(4);
    expectSaid(examine(), {"[Fallo] La cámara se ha desconectado durante la comprobación.",
                           "[Fallo] La cámara se ha desconectado durante la comprobación\n",
                           "paso desconocido, predeterminado desconocido."});
}

TEST_F(ExaminationTest, ACameraThatIsTooSlowToTellItsPositionIsNotAskedAgain) {
    struct Row {
        std::size_t slowFrom, slowUntil, asked;
    };
    for (const Row &row : {Row{0, 12, 1}, Row{1, 6, 12}, Row{1, 12, 7}}) {
        plug({});
        const auto facts = examine(
            [&] {
                const bool isSlow = asked() >= row.slowFrom && asked() < row.slowUntil;
                camera().setAnswerDelay(isSlow ? 100ms : 0ms);
            },
            90ms);
        // Of a question for limits the kernel's driver may make four transfers.
        EXPECT_EQ(asked(), row.asked);
        EXPECT_EQ(facts.slowest >= 100ms, row.asked < 12);
        const std::string text = "[Aviso] La cámara tarda demasiado en contestar: más de 2000 milisegundos";
        expectSaid(facts, {row.asked < 12 ? text : "!" + text, "![Fallo]", "!contesta despacio"});
    }
}

TEST_F(ExaminationTest, OddAndShortAnswersAreToldAsTheyAre) {
    simulator::CameraOptions odd;
    odd.reversedRange = odd.zeroResolution = odd.outsideRange = true;
    plug(odd);
    expectSaid(examine(), {"Giro: 648000 (180,0°)", "De 612000 (170,0°) a -612000 (-170,0°), paso 0 (0,0°)",
                           "[Fallo] Giro: el mínimo es mayor", "[Aviso] Zoom: el paso es 0"});
    simulator::CameraOptions terse;
    terse.shortAnswers = true;
    plug(terse);
    expectSaid(examine(),
               {"[Fallo] Ha fallado la petición GET_CUR", "[Aviso] Ha fallado la petición GET_MIN"});
}

using OrderTrialTest = ExaminationTest;

TEST_F(OrderTrialTest, SendsTheCameraTheVeryPositionThatItReports) {
    std::vector<std::uint8_t> betweenSteps{0x88, 0x13, 0, 0, 0x78, 0xEC, 0xFF, 0xFF};
    ASSERT_TRUE(camera().controlRequest(kSetPanTilt, betweenSteps));
    const auto found = examine();
    camera().forgetTransfers();
    const auto trial = *tried(found).trial;
    EXPECT_TRUE(trial.panTilt->wasObeyed() && trial.zoom->wasObeyed());
    const auto &transfers = camera().transfers();
    ASSERT_EQ(transfers.size(), 4U);
    EXPECT_EQ(transfers[1].setup, kSetPanTilt);
    EXPECT_EQ(transfers[1].data, betweenSteps);
    EXPECT_EQ(transfers[3].setup, kSetZoom);
    EXPECT_EQ(transfers[3].data, transfers[2].data);
    EXPECT_EQ(bus().openHandles(), 0);
}

TEST_F(OrderTrialTest, SendsNothingWhereThePositionIsUnknownOrImpossible) {
    auto facts = examine();
    using Range = selfcheck::FieldValues;
    const Range zeros{0, 0};
    for (const auto &[minimum, maximum, stage] :
         {std::tuple(zeros, zeros, Stage::ordering), std::tuple(Range{0, 1}, zeros, Stage::outsideRange),
          std::tuple(zeros, Range{-1, 0}, Stage::outsideRange)}) {
        facts.panTilt.minimum = minimum;
        facts.panTilt.maximum = maximum;
        EXPECT_EQ(tried(facts).trial->panTilt->stage, stage);
    }
    camera().refuse({kTerminal, kPanTiltAbs, kGetCur});
    EXPECT_EQ(tried(facts).trial->panTilt->stage, Stage::reading);
    EXPECT_EQ(room_->panTiltSets(), 1);
}

TEST_F(OrderTrialTest, ACameraThatIsGoneOrAnotherIsSentNothingMore) {
    const auto found = examine();
    camera().unplugAfter(1);
    const auto trial = *tried(found).trial;
    EXPECT_EQ(trial.panTilt->stage, Stage::ordering);
    EXPECT_EQ(trial.panTilt->outcome, Outcome::disconnected);
    EXPECT_EQ(trial.zoom->stage, Stage::reading);
    EXPECT_EQ(trial.zoom->outcome, Outcome::disconnected);

    bus().unplug(room_->camera);
    const auto other = plugAnother({}, {2});
    EXPECT_EQ(tried(found).trial->zoom->outcome, Outcome::disconnected);
    EXPECT_TRUE(other->transfers().empty()) << "another camera is not the one that was checked";
}

}  // namespace
