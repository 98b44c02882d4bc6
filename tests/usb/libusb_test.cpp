// What needs no device.
#include <gtest/gtest.h>
#include <libusb.h>

#include <array>
#include <utility>

#include "usb/libusb/libusb_outcome.h"
#include "usb/libusb/sysfs_name.h"

namespace {

using usb::Outcome;

TEST(LibusbOutcome, TellsTheFailuresApartAndAShortAnswerFromAWholeOne) {
    for (const auto &[result, outcome] : {
             std::pair{8, Outcome::done},
             std::pair{7, Outcome::failed},
             std::pair{0, Outcome::failed},
             std::pair{int{LIBUSB_ERROR_PIPE}, Outcome::refused},
             std::pair{int{LIBUSB_ERROR_TIMEOUT}, Outcome::timedOut},
             std::pair{int{LIBUSB_ERROR_NO_DEVICE}, Outcome::disconnected},
             std::pair{int{LIBUSB_ERROR_ACCESS}, Outcome::denied},
             std::pair{int{LIBUSB_ERROR_BUSY}, Outcome::busy},
             std::pair{int{LIBUSB_ERROR_IO}, Outcome::failed},
         })
        EXPECT_EQ(usb::transferOutcome(result, 8), outcome) << result;
}

TEST(SysfsDirectory, NamesEveryPortOnTheWayToADeviceBehindHubs) {
    EXPECT_EQ(usb::sysfsDirectory(3, std::array<std::uint8_t, 3>{1, 4, 2}), "/sys/bus/usb/devices/3-1.4.2");
}

}  // namespace
