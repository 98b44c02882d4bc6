// What a check asks, what it leaves alone, and when it stops asking.
#include "selfcheck/examination.h"

#include <chrono>
#include <tuple>

#include "selfcheck/watched_device.h"
#include "selfcheck_bench.h"

namespace {

using namespace std::chrono_literals;
using namespace support;
using usb::Outcome;

constexpr usb::SetupPacket kSetPanTilt{0x21, kSetCur, kPanTiltAbs << 8, kTerminal << 8, 8};
constexpr usb::SetupPacket kSetZoom{0x21, kSetCur, kZoomAbs << 8, kTerminal << 8, 2};

using ExaminationTest = SelfcheckBench;
using OrderTrialTest = SelfcheckBench;

TEST_F(ExaminationTest, OnlyGetsReachTheCameraAtMostTwoAStepAndNothingStaysOpen) {
    std::size_t before = 0;
    const auto facts = examine([&] { EXPECT_LE(asked() - std::exchange(before, asked()), 2U); });
    ASSERT_EQ(asked(), 12U);
    EXPECT_EQ(camera().transfers().front().setup.request, kGetCur) << "what shows a slow camera comes first";
    for (const auto &transfer : camera().transfers()) EXPECT_EQ(transfer.setup.requestType, 0xA1);
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

TEST_F(ExaminationTest, ACameraThatIsDeadOrTooSlowToTellItsPositionIsNotAskedAgain) {
    // Late from that request to that one, and how many reach the camera. Of a question for limits the
    // kernel's driver may make four transfers, so that it may take longer.
    const std::vector<std::tuple<std::chrono::milliseconds, std::size_t, std::size_t, std::size_t>> rows{
        {1h, 0, 12, 0},    {1h, 1, 12, 1},    {1h, 6, 12, 6},   {1h, 8, 12, 8},
        {100ms, 0, 12, 1}, {100ms, 1, 6, 12}, {100ms, 1, 12, 7}};
    for (const auto &[delay, from, until, reached] : rows) {
        plug({});
        const auto beLate = [this, late = delay, first = from, end = until] {
            camera().setAnswerDelay(asked() >= first && asked() < end ? late : 0ms);
        };
        const auto facts = examine(beLate, 90ms);
        EXPECT_EQ(asked(), reached);
        EXPECT_EQ(facts.panTilt.failures.size() + facts.zoom.failures.size(), delay == 1h ? 1U : 0U);
        EXPECT_EQ(facts.givenUp.has_value(), reached < 12);
        EXPECT_EQ(facts.slowest >= 100ms, delay < 1h && reached < 12);
        EXPECT_TRUE(facts.store.hasDocuments) << "the store is looked at all the same";
        const std::string late = "[Aviso] La cámara tarda demasiado en contestar: más de 2000 milisegundos";
        const std::string unknown =
            "[Aviso] La cámara contesta, pero demasiado despacio: no se le ha preguntado";
        const std::string no = delay < 1h && reached < 12 ? "" : "!";
        expectSaid(facts, {no + late, no + unknown, "!contesta despacio"});
    }
    plug({}).unplugAfter(4);
    expectSaid(examine(), {"[Fallo] La cámara se ha desconectado durante la comprobación.",
                           "[Fallo] La cámara se ha desconectado durante la comprobación\n",
                           "paso desconocido, predeterminado desconocido."});
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
    facts.panTilt.minimum = selfcheck::FieldValues{0, 1};
    expectSaid(tried(facts), {"[Dato] Giro e inclinación: no se ha probado"});
    facts.panTilt.minimum = selfcheck::FieldValues{0, 0};
    facts.panTilt.maximum = selfcheck::FieldValues{-1, 0};
    expectSaid(tried(facts), {"[Dato] Giro e inclinación: no se ha probado"});
    facts.panTilt.maximum = selfcheck::FieldValues{0, 0};
    expectSaid(tried(facts), {"Giro e inclinación: la cámara ha aceptado"});
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
    // The same, just started anew and not yet configured.
    bus().plugOther(found.cameras[0].vendorId, found.cameras[0].productId, "", 1, {1});
    expectSaid(tried(found), gone);
}

}  // namespace
