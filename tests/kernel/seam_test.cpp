// What the backends promise to the camera library, one request at a time.
#include <gmock/gmock.h>

#include <fstream>

#include "kernel/each_backend.h"
#include "kernel/product_registry.h"
#include "model/camera_models.h"

namespace guest {
namespace {

using ::testing::IsEmpty;
using usb::Outcome;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kSetCur = 0x01, kGetCur = 0x81, kGetMin = 0x82, kGetRes = 0x84, kGetInfo = 0x86,
                       kGetDef = 0x87;

usb::SetupPacket requestFor(std::uint8_t request, std::uint8_t unit, std::uint8_t selector,
                            std::size_t length) {
    return {static_cast<std::uint8_t>(request == kSetCur ? 0x21 : 0xA1), request,
            static_cast<std::uint16_t>(selector << 8), static_cast<std::uint16_t>(unit << 8),
            static_cast<std::uint16_t>(length)};
}

const usb::SetupPacket kReadZoom = requestFor(kGetCur, 1, 0x0B, 2);

/// The camera's VideoControl interface, closed.
std::unique_ptr<usb::VideoControl> interfaceOfCamera() {
    return cameraAmong(*usb::makeSystemRegistry())->videoControl();
}

/// One request and what comes of it.
struct Row {
    std::uint8_t request, unit, selector;
    Bytes data;  // sent, or expected
    Outcome outcome = Outcome::done;
};

void expectAnswers(usb::VideoControl &control, const std::vector<Row> &rows) {
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::PrintToString(std::tuple(row.request, row.unit, row.selector)));
        Bytes data = row.request == kSetCur ? row.data : Bytes(row.data.size());
        EXPECT_EQ(control.controlRequest(requestFor(row.request, row.unit, row.selector, data.size()), data),
                  row.outcome);
        if (row.outcome == Outcome::done) {
            EXPECT_EQ(data, row.data);
        }
    }
}

/// A camera that uvcvideo holds, and its interface, open.
struct HeldCamera {
    explicit HeldCamera(const std::vector<std::string> &options = {}) : camera(options) {
        camera.plugIn();
        control = interfaceOfCamera();
        EXPECT_EQ(control->open(), Outcome::done);
    }

    VirtualCamera camera;
    std::unique_ptr<usb::VideoControl> control;
};

class Seam : public EachBackend {};
INSTANTIATE_TEST_SUITE_P(By, Seam, kBothBackends, backendName);

TEST_P(Seam, KnowsTheCameraAndAsksItOnlyWhileOpen) {
    VirtualCamera camera({"--fault", "interface"});
    camera.plugIn();
    camera.forget();
    auto registry = usb::makeSystemRegistry();
    const auto device = cameraAmong(*registry);
    registry.reset();  // nothing that came from it may suffer
    EXPECT_EQ(device->vendorId(), model::kRecords[0].vendorId);
    EXPECT_EQ(device->productId(), model::kRecords[0].productId);
    EXPECT_EQ(device->registryName(), "Cámara PTZ simulada");
    const std::string name = camerasOnBus().at(0);  // "1-1": bus and port
    EXPECT_EQ(device->locationId(), unsigned(name.at(0) - '0') << 24 | unsigned(name.at(2) - '0') << 20);

    const auto control = device->videoControl();
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->interfaceNumber(), 1);
    const auto descriptors = control->classDescriptors();
    ASSERT_GT(descriptors.size(), 13u);
    EXPECT_EQ(descriptors[0], 13);
    EXPECT_EQ(descriptors[5], descriptors.size()) << "wTotalLength";

    auto read = kReadZoom;
    read.index |= 1;
    Bytes zoom(2);
    Bytes tooLong(3);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(control->controlRequest(read, zoom), Outcome::failed);
        EXPECT_EQ(control->open(), Outcome::done);
        EXPECT_EQ(control->open(), Outcome::done);
        EXPECT_EQ(control->controlRequest(read, tooLong), Outcome::failed);
        EXPECT_THAT(camera.transfers("GET_CUR", kZoom), testing::SizeIs(round));
        EXPECT_EQ(control->controlRequest(read, zoom), Outcome::done);
        EXPECT_EQ(control->close(), Outcome::done);
        EXPECT_EQ(control->close(), Outcome::done);
    }

    // A device without an active configuration is listed, and has no interface.
    std::ofstream("/sys/bus/usb/devices/" + name + "/bConfigurationValue") << "0" << std::flush;
    EXPECT_EQ(device->videoControl(), nullptr);
}

TEST_P(Seam, SaysWhyAnOpenInterfaceNoLongerAnswers) {
    VirtualCamera camera;
    camera.plugIn();
    const auto control = interfaceOfCamera();
    ASSERT_EQ(control->open(), Outcome::done);
    camera.pullOut();
    Bytes zoom(2);
    EXPECT_EQ(control->controlRequest(kReadZoom, zoom), Outcome::disconnected);
    EXPECT_EQ(control->close(), Outcome::done);
    EXPECT_EQ(control->open(), Outcome::disconnected);

    // Another camera, in the same place.
    camera.plugIn();
    EXPECT_EQ(control->open(), Outcome::disconnected);
    const auto again = interfaceOfCamera();
    EXPECT_EQ(again->open(), Outcome::done);
    EXPECT_EQ(again->controlRequest(kReadZoom, zoom), Outcome::done);
}

TEST(SeamByDriver, TranslatesModesAndFlagsAndRefusesWithoutATransferWhatV4l2CannotSay) {
    loadDriver();
    HeldCamera held({"--fault", "exposure"});
    expectAnswers(*held.control, {{kGetInfo, 1, 0x0D, {0x03}},
                                  {kGetInfo, 1, 0x06, {0x07}},  // focus-abs, while the focus is automatic
                                  {kSetCur, 1, 0x08, {0}},
                                  {kGetInfo, 1, 0x06, {0x03}},
                                  // Manual (1) and aperture priority (8), which is the default.
                                  {kGetCur, 1, 0x02, {8}},
                                  {kGetDef, 1, 0x02, {8}},
                                  {kGetRes, 1, 0x02, {9}},
                                  {kSetCur, 1, 0x02, {1}},
                                  {kGetCur, 1, 0x02, {1}}});
    held.camera.forget();
    expectAnswers(*held.control, {{kGetMin, 1, 0x02, {0}, Outcome::refused},
                                  {kSetCur, 1, 0x02, {4}, Outcome::refused},         // not this camera's
                                  {kSetCur, 1, 0x02, {3}, Outcome::refused},         // no mode
                                  {kGetCur, 1, 0x01, Bytes(1), Outcome::refused},    // scanning-mode
                                  {0x85, 1, 0x0B, Bytes(2), Outcome::refused},       // GET_LEN
                                  {kGetCur, 1, 0x0B, Bytes(4), Outcome::refused},    // zoom-abs has two bytes
                                  {kGetCur, 7, 0x0B, Bytes(2), Outcome::refused}});  // no such kind of unit
    Bytes zoom(2);
    for (const usb::SetupPacket &setup : {usb::SetupPacket{0xA1, kGetCur, 0x0B00, 0x0103, 2},  // interface 3
                                          {0xA1, kGetCur, 0x0B01, 0x0100, 2},
                                          {0xA1, kSetCur, 0x0B00, 0x0100, 2},  // the direction of a GET
                                          {0x21, kGetCur, 0x0B00, 0x0100, 2}})
        EXPECT_EQ(held.control->controlRequest(setup, zoom), Outcome::refused) << setup.value << setup.index;
    EXPECT_THAT(held.camera.transfers(), IsEmpty());
}

TEST(SeamByDriver, TakesV4l2sWhiteBalanceForTheOneThatTheCameraHas) {
    loadDriver();
    struct Case {
        std::vector<std::string> options;
        Outcome temperature, component;
    };
    for (const Case &row : {Case{{}, Outcome::done, Outcome::refused},
                            {{"--fault", "wb-component"}, Outcome::refused, Outcome::done},
                            {{"--fault", "wb-both"}, Outcome::done, Outcome::refused}}) {
        HeldCamera held(row.options);
        expectAnswers(*held.control,
                      {{kGetCur, 2, 0x0B, {1}, row.temperature}, {kGetCur, 2, 0x0D, {1}, row.component}});
    }
}

TEST(SeamByDriver, GoesOnThroughLibusbWhenTheDriverGoesUnderAnOpenInterface) {
    loadDriver();
    const HeldCamera held;
    const std::string name = camerasOnBus().at(0);
    unbindDriver(name);
    expectAnswers(*held.control, {{kSetCur, 1, 0x0B, {44, 0}}, {kGetCur, 1, 0x0B, {44, 0}}});
    EXPECT_EQ(held.control->close(), Outcome::done);
    bindDriver(name);  // which libusb must have let go of
}

TEST(InterfaceReport, TellsWhoHoldsTheCamera) {
    unloadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const std::string name = camerasOnBus().at(0);
    const auto expectReport = [](usb::Holder holder, const char *driver, usb::Backend backend,
                                 const std::string &path, Outcome access) {
        SCOPED_TRACE(driver);
        const usb::InterfaceReport report = reportOnTheCamera();
        EXPECT_EQ(report.holder, holder);
        EXPECT_EQ(report.holderName, driver);
        EXPECT_EQ(report.backend, backend);
        EXPECT_EQ(report.path, path);
        EXPECT_EQ(report.access, access);
        EXPECT_THAT(report.programs, IsEmpty()) << "this one does not count";
        EXPECT_TRUE(report.sawEveryProgram);
    };
    using enum usb::Holder;
    const auto control = interfaceOfCamera();
    expectReport(nobody, "", usb::Backend::direct, usbNode(name), Outcome::done);
    ASSERT_EQ(control->open(), Outcome::done);
    expectReport(program, "usbfs", usb::Backend::direct, usbNode(name), Outcome::busy);
    EXPECT_EQ(interfaceOfCamera()->open(), Outcome::busy);
    EXPECT_EQ(control->close(), Outcome::done);

    // A driver without a video node.
    const std::string ids(model::kRecords[0].ids);  // "vvvv:pppp"
    run({"modprobe", "usbtest", "vendor=0x" + ids.substr(0, 4), "product=0x" + ids.substr(5)});
    expectReport(otherDriver, "usbtest", usb::Backend::none, "", Outcome::busy);
    EXPECT_EQ(control->open(), Outcome::busy);
    EXPECT_FALSE(setZoomPosition(5));
    run({"modprobe", "-r", "usbtest"});

    loadDriver();
    requireSoon("the driver's node", [&] { return captureNode(name).has_value(); });
    ASSERT_EQ(control->open(), Outcome::done);
    expectReport(cameraDriver, "uvcvideo", usb::Backend::driver, captureNode(name).value(), Outcome::done);
    const auto registry = usb::makeSystemRegistry();
    EXPECT_EQ(registry->inspectInterface(0x7F000000), std::nullopt);
}

}  // namespace
}  // namespace guest
