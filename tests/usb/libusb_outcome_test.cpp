#include "usb/libusb/libusb_outcome.h"

#include <gtest/gtest.h>
#include <libusb.h>

#include <utility>

namespace {

using usb::Outcome;

TEST(LibusbOutcome, TellsTheFailuresApartAndAShortAnswerFromAWholeOne) {
    for (const auto &[result, outcome] : {
             std::pair{8, Outcome::done},
             std::pair{7, Outcome::failed},
             std::pair{int{LIBUSB_ERROR_PIPE}, Outcome::refused},
             std::pair{int{LIBUSB_ERROR_TIMEOUT}, Outcome::timedOut},
             std::pair{int{LIBUSB_ERROR_NO_DEVICE}, Outcome::disconnected},
             std::pair{int{LIBUSB_ERROR_ACCESS}, Outcome::denied},
             std::pair{int{LIBUSB_ERROR_BUSY}, Outcome::busy},
             std::pair{int{LIBUSB_ERROR_IO}, Outcome::failed},
         })
        EXPECT_EQ(usb::transferOutcome(result, 8), outcome) << result;
}

}  // namespace
