// What a check asks, what it leaves alone, and when it stops asking.
#include "selfcheck/examination.h"

#include <array>
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

constexpr std::uint8_t kGet = 0xA1;
constexpr usb::SetupPacket kSetPanTilt{0x21, kSetCur, kPanTiltAbs << 8, kTerminal << 8, 8};
constexpr usb::SetupPacket kSetZoom{0x21, kSetCur, kZoomAbs << 8, kTerminal << 8, 2};

using ExaminationTest = SelfcheckBench;
using OrderTrialTest = SelfcheckBench;

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
    for (const auto &[from, until, answers] :
         {std::array<std::size_t, 3>{0, 12, 1}, std::array<std::size_t, 3>{1, 6, 12},
          std::array<std::size_t, 3>{1, 12, 7}}) {
        plug({});
        const auto facts = examine(
            [this, from = from, until = until] {
                camera().setAnswerDelay(asked() >= from && asked() < until ? 100ms : 0ms);
            },
            90ms);
        // Of a question for limits the kernel's driver may make four transfers.
        EXPECT_EQ(asked(), answers);
        EXPECT_EQ(facts.slowest >= 100ms, answers < 12);
        const std::string text = "[Aviso] La cámara tarda demasiado en contestar: más de 2000 milisegundos";
        expectSaid(facts, {answers < 12 ? text : "!" + text, "![Fallo]", "!contesta despacio"});
    }
}

TEST_F(OrderTrialTest, SendsTheCameraTheVeryPositionThatItReports) {
    std::vector<std::uint8_t> betweenSteps{0x88, 0x13, 0, 0, 0x78, 0xEC, 0xFF, 0xFF};
    ASSERT_TRUE(camera().controlRequest(kSetPanTilt, betweenSteps));
    const auto found = examine();
    camera().forgetTransfers();
    expectSaid(tried(found), {"[Bien] La cámara obedece"});
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
    using Range = std::vector<selfcheck::FieldValues>;
    for (const Range &range : {Range{{0, 1}, {9, 9}}, Range{{-9, -9}, {-1, 0}}, Range{{0, 0}, {0, 0}}}) {
        facts.panTilt.minimum = range.front();
        facts.panTilt.maximum = range.back();
        const bool isInside = range.front() == range.back();
        expectSaid(tried(facts), {isInside ? "inclinación: la cámara ha" : "inclinación: no se ha probado"});
    }
    camera().refuse({kTerminal, kPanTiltAbs, kGetCur});
    expectSaid(tried(facts), {"[Fallo] Giro e inclinación: no se ha podido leer la posición"});
    EXPECT_EQ(room_->panTiltSets(), 1);
}

TEST_F(OrderTrialTest, ACameraThatIsGoneOrAnotherIsSentNothingMore) {
    simulator::CameraOptions fleeing;
    fleeing.goneOnOrder = true;
    plug(fleeing);
    const auto found = examine();
    const Pieces gone{"Giro e inclinación: la cámara ya no está", "Zoom: la cámara ya no está"};
    expectSaid(tried(found), gone);
    bus().unplug(room_->camera);
    const auto other = plugAnother({}, {2});
    expectSaid(tried(found), gone);
    EXPECT_TRUE(other->transfers().empty()) << "another camera is not the one that was checked";
}

}  // namespace
