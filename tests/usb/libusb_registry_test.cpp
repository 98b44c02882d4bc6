#include "usb/libusb/libusb_registry.h"

#include <libusb.h>

#include "usb/libusb/libusb_outcome.h"
#include "usb/usbfs_rig.h"

namespace {

using contract::CameraModel;
using contract::interfacesOf;
using usb::Outcome;

using Bytes = std::vector<std::uint8_t>;

using LibusbRig = contract::UsbfsRig<usb::LibusbRegistry>;

}  // namespace

namespace contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Libusb, RegistryContract, LibusbRig);
}  // namespace contract

namespace {

TEST(LibusbOutcome, TellsTheFailuresApart) {
    const std::vector<std::pair<int, Outcome>> rows{
        {LIBUSB_SUCCESS, Outcome::done},
        {8, Outcome::done},
        {LIBUSB_ERROR_PIPE, Outcome::refused},
        {LIBUSB_ERROR_TIMEOUT, Outcome::timedOut},
        {LIBUSB_ERROR_NO_DEVICE, Outcome::disconnected},
        {LIBUSB_ERROR_ACCESS, Outcome::denied},
        {LIBUSB_ERROR_BUSY, Outcome::busy},
        {LIBUSB_ERROR_IO, Outcome::failed},
        {-1000, Outcome::failed},
    };
    for (const auto &[result, outcome] : rows) EXPECT_EQ(usb::outcomeOf(result), outcome) << result;
}

class LibusbRegistryTest : public testing::Test {
 protected:
    /// The interface of a device with the camera's device descriptor and this configuration behind the
    /// header.
    std::unique_ptr<usb::VideoControl> interfaceOf(const Bytes &behindHeader, bool configured = true) {
        const auto size = static_cast<std::uint8_t>(9 + behindHeader.size());
        Bytes configuration{0x09, 0x02, size, 0x00, 0x02, 0x01, 0x00, 0x80, 0x32};
        configuration.insert(configuration.end(), behindHeader.begin(), behindHeader.end());
        rig.usbfs.plugImage({CameraModel().deviceDescriptor(), configuration, "", configured}, 1, {1});
        auto interfaces = interfacesOf(rig);
        return interfaces.empty() ? nullptr : std::move(interfaces.front());
    }

    LibusbRig rig;
};

const Bytes kVendorInterface{0x09, 0x04, 0x00, 0x00, 0x00, 0xFF, 0x01, 0x00, 0x00};

TEST_F(LibusbRegistryTest, TakesTheFirstVideoControlSettingEvenIfItIsAnAlternateOne) {
    Bytes bytes = kVendorInterface;
    const Bytes more{0x09, 0x04, 0x03, 0x00, 0x00, 0x0E, 0x02, 0x00, 0x00,  // streaming: not this one
                     0x09, 0x04, 0x03, 0x01, 0x00, 0x0E, 0x01, 0x07, 0x00,  // some protocol
                     0x05, 0x24, 0x01, 0xAA, 0xBB};
    bytes.insert(bytes.end(), more.begin(), more.end());
    const auto control = interfaceOf(bytes);
    ASSERT_NE(control, nullptr);
    EXPECT_EQ(control->interfaceNumber(), 3);
    EXPECT_THAT(control->classDescriptors(), testing::ElementsAre(0x05, 0x24, 0x01, 0xAA, 0xBB));
}

TEST_F(LibusbRegistryTest, FindsClassDescriptorsMisplacedBehindTheEndpoint) {
    const auto control = interfaceOf({0x09, 0x04, 0x00, 0x00, 0x01, 0x0E, 0x01, 0x00, 0x00,  //
                                      0x07, 0x05, 0x81, 0x03, 0x10, 0x00, 0x08,              //
                                      0x05, 0x24, 0x01, 0xAA, 0xBB});
    ASSERT_NE(control, nullptr);
    EXPECT_THAT(control->classDescriptors(), testing::ElementsAre(0x05, 0x24, 0x01, 0xAA, 0xBB));
}

TEST_F(LibusbRegistryTest, FindsNothingWhereNoConfigurationIsActive) {
    EXPECT_EQ(interfaceOf({0x09, 0x04, 0x00, 0x00, 0x00, 0x0E, 0x01, 0x00, 0x00}, false), nullptr);
    const auto device = contract::deviceAt(rig, 0x01100000);
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->vendorId(), model::kRecords.front().vendorId);
    EXPECT_EQ(device->registryName(), std::nullopt);
}

}  // namespace
