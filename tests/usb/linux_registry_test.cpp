#include "usb/linux/linux_registry.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/types.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "usb/linux/linux_video_control.h"
#include "usb/linux/program_scan.h"
#include "usb/usbfs_rig.h"

namespace {

using contract::Camera;
using contract::CameraModel;
using contract::getRequest;
using contract::interfacesOf;
using contract::kGetZoom;
using contract::kSetZoom;
using contract::Ports;
using contract::setRequest;
using usb::Outcome;

using Bytes = std::vector<std::uint8_t>;

using NoDriverRig = contract::UsbfsRig<usb::LinuxRegistry>;

}  // namespace

namespace contract {
INSTANTIATE_TYPED_TEST_SUITE_P(NoDriver, RegistryContract, NoDriverRig);
}  // namespace contract

namespace {

class LinuxRegistryTest : public testing::Test {
 protected:
    std::unique_ptr<usb::VideoControl> interfaceAt(std::uint32_t locationId) {
        const auto device = contract::deviceAt(rig, locationId);
        return device ? device->videoControl() : nullptr;
    }

    /// That of the camera, plugged in and taken by the driver.
    std::unique_ptr<usb::VideoControl> boundInterface() {
        rig.plug(camera, 1, kPorts);
        rig.usbfs.bindDriver(camera);
        return interfaceAt(kLocation);
    }

    /// Opens, sends and closes, as the camera library does for each request.
    Outcome request(usb::VideoControl &control, const usb::SetupPacket &setup, Bytes &data) {
        if (const Outcome opened = control.open(); opened != Outcome::done) return opened;
        const Outcome outcome = control.controlRequest(setup, data);
        EXPECT_EQ(control.close(), Outcome::done);
        return outcome;
    }

    [[nodiscard]] std::optional<usb::InterfaceReport> inspect(std::uint32_t locationId) const {
        return registry.inspectInterface(locationId);
    }

    NoDriverRig rig;
    const usb::LinuxRegistry registry{};
    Camera camera = std::make_shared<CameraModel>();
    static constexpr std::uint32_t kLocation = 0x01200000;
    const Ports kPorts{2};
};

TEST_F(LinuxRegistryTest, GoesOnThroughLibusbWhenTheDriverGoesUnderAnOpenInterface) {
    const auto control = boundInterface();
    ASSERT_NE(control, nullptr);
    ASSERT_EQ(control->open(), Outcome::done);

    rig.usbfs.unbindDriver(camera);
    Bytes data{44, 0};
    EXPECT_EQ(control->controlRequest(kSetZoom, data), Outcome::done);
    EXPECT_EQ(camera->target().zoom, 44);
    EXPECT_EQ(rig.openInterfaces(), 1);
    EXPECT_EQ(control->close(), Outcome::done);
    EXPECT_EQ(rig.openInterfaces(), 0);
}

TEST_F(LinuxRegistryTest, MovesAPositionBeyondTheCamerasLimitsToTheNearest) {
    const auto control = boundInterface();
    ASSERT_NE(control, nullptr);
    Bytes beyond{0xF2, 0x03};  // 1010
    EXPECT_EQ(request(*control, kSetZoom, beyond), Outcome::done);
    EXPECT_EQ(camera->target().zoom, 1000);
}

TEST_F(LinuxRegistryTest, RefusesWithoutATransferWhatV4l2CannotSay) {
    const auto control = boundInterface();
    ASSERT_NE(control, nullptr);
    const std::vector<usb::SetupPacket> requests{
        getRequest(0x81, 1, 0x01, 1),     // scanning-mode: not mapped
        getRequest(0x85, 1, 0x0B, 2),     // GET_LEN
        getRequest(0x81, 1, 0x0B, 4),     // zoom-abs has two bytes
        getRequest(0x81, 7, 0x0B, 2),     // no such kind of unit
        {0xA1, 0x81, 0x0B00, 0x0103, 2},  // another interface
        {0xA1, 0x01, 0x0B00, 0x0100, 2},  // SET_CUR with the direction of a GET
        {0x21, 0x81, 0x0B00, 0x0100, 2},  // and the other way round
        getRequest(0x81, 2, 0x0D, 1),     // this camera's automatic white balance is another
    };
    for (const usb::SetupPacket &setup : requests) {
        Bytes data(setup.length, 0);
        EXPECT_EQ(request(*control, setup, data), Outcome::refused) << setup.value << " " << setup.length;
    }
    EXPECT_TRUE(camera->transfers().empty());
}

TEST_F(LinuxRegistryTest, TakesV4l2sWhiteBalanceForTheOneThatTheCameraHas) {
    rig.plug(camera, 1, kPorts);
    rig.usbfs.bindDriver(camera);
    const auto listed = usb::LibusbRegistry().libusbDevices();
    ASSERT_TRUE(listed.has_value());
    const auto device = std::ranges::find(*listed, kLocation, &usb::LibusbDevice::locationId);
    ASSERT_NE(device, listed->end());
    const auto found = usb::findVideoControl(device->reference());
    ASSERT_NE(found, nullptr);
    const auto interface = usb::sysfsInterfaceOf(*device, *found);
    ASSERT_TRUE(interface.has_value());

    struct Row {
        std::uint8_t bits;  // of bmControls, second byte
        Outcome temperature, component;
    };
    for (const Row &row : {Row{0x10, Outcome::done, Outcome::refused},
                           {0x20, Outcome::refused, Outcome::done},
                           {0x30, Outcome::done, Outcome::refused}}) {
        const Bytes processingUnit{7, 0x24, 1, 0x10, 1, 18, 0, 11, 0x24, 0x05, 2, 1, 0, 0, 2, 0, row.bits, 0};
        usb::V4l2VideoControl control(*interface, camera->videoControlInterface(), processingUnit);
        Bytes data{0};
        EXPECT_EQ(request(control, getRequest(0x81, 2, 0x0B, 1), data), row.temperature) << int{row.bits};
        EXPECT_EQ(request(control, getRequest(0x81, 2, 0x0D, 1), data), row.component) << int{row.bits};
    }
}

TEST_F(LinuxRegistryTest, RenumbersTheExposureModeAndTellsTheModesThatTheCameraHas) {
    const auto control = boundInterface();
    ASSERT_NE(control, nullptr);
    rig.usbfs.driverOf(camera).offerExposureModes(0b1010, 3);  // manual; aperture priority by default

    const auto ask = [&](std::uint8_t code) {
        Bytes data{0};
        EXPECT_EQ(request(*control, getRequest(code, 1, 0x02, 1), data), Outcome::done) << int{code};
        return int{data[0]};
    };
    EXPECT_EQ(ask(0x81), 8);
    EXPECT_EQ(ask(0x87), 8);
    EXPECT_EQ(ask(0x84), 1 | 8);
    Bytes mode{0};
    EXPECT_EQ(request(*control, getRequest(0x82, 1, 0x02, 1), mode), Outcome::refused);

    mode = {1};
    EXPECT_EQ(request(*control, setRequest(1, 0x02, 1), mode), Outcome::done);
    EXPECT_EQ(rig.usbfs.driverOf(camera).exposureMode(), 1);
    EXPECT_EQ(ask(0x81), 1);
    mode = {4};  // a mode, but none of this camera's
    EXPECT_EQ(request(*control, setRequest(1, 0x02, 1), mode), Outcome::refused);
}

TEST_F(LinuxRegistryTest, ReportsWhoHoldsTheInterfaceAndWhetherThisUserMayOpenIt) {
    rig.plug(camera, 1, kPorts);
    const auto report = [&] { return inspect(kLocation).value_or(usb::InterfaceReport()); };
    EXPECT_EQ(report().holder, usb::Holder::nobody);
    EXPECT_THAT(report().path, testing::StartsWith("/dev/bus/usb/001/"));
    EXPECT_EQ(report().access, Outcome::done);
    rig.withoutRights(camera, [&] { EXPECT_EQ(report().access, Outcome::denied); });

    rig.usbfs.bindDriver(camera, true);
    EXPECT_EQ(report().holder, usb::Holder::cameraDriver);
    EXPECT_EQ(report().path, rig.usbfs.videoNodesOf(camera).back());
    EXPECT_EQ(report().access, Outcome::done);
    rig.withoutRights(camera, [&] { EXPECT_EQ(report().access, Outcome::denied); });

    EXPECT_EQ(inspect(0x01300000), std::nullopt);
    rig.plugKeyboard(1, {3});
    EXPECT_EQ(inspect(0x01300000), std::nullopt);

    // Port numbers above 15 lose a bit, so that devices of several ports share an id.
    rig.plugKeyboard(2, {16});
    rig.plug(std::make_shared<CameraModel>(), 2, {32});
    EXPECT_NE(inspect(0x02000000), std::nullopt);
    EXPECT_TRUE(camera->transfers().empty());
}

TEST(ProgramScan, TellsAProgramThatHasTheFileInItsMemory) {
    // The fake bus's nodes cannot be mapped, so this is a plain file.
    const std::string file = testing::TempDir() + "pictures" + std::to_string(::getpid());
    std::ofstream(file) << "x";
    std::array<int, 2> ready{};
    ASSERT_EQ(::pipe(ready.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const int opened = ::open(file.c_str(), O_RDONLY);
        const bool isMapped = ::mmap(nullptr, 1, PROT_READ, MAP_SHARED, opened, 0) != MAP_FAILED;
        if (::write(ready[1], isMapped ? "y" : "n", 1) == 1) ::pause();
        ::_exit(1);
    }
    ASSERT_GT(child, 0);
    char isMapped = '?';
    EXPECT_EQ(::read(ready[0], &isMapped, 1), 1);
    EXPECT_EQ(isMapped, 'y');

    const usb::ProgramScan scan = usb::findProgramsHolding(file);
    ::kill(child, SIGKILL);
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
    for (const int end : ready) ::close(end);
    std::filesystem::remove(file);
    ASSERT_EQ(scan.programs.size(), 1u);
    EXPECT_EQ(scan.programs.front().processId, child);
    EXPECT_TRUE(scan.programs.front().streams);
}

}  // namespace
