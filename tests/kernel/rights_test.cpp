#include <gmock/gmock.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "kernel/each_backend.h"
#include "kernel/product_registry.h"

namespace guest {
namespace {

using ::testing::AllOf;
using ::testing::ExitedWithCode;

constexpr int kNobodyMoves = 0;
constexpr int kSomethingMoved = 1;

/// In a child process, as an ordinary user. Several calls, so that a line printed at every call is seen.
[[noreturn]] void tryAsOrdinaryUser() {
    if (::setgroups(0, nullptr) != 0 || ::setresgid(65534, 65534, 65534) != 0 ||
        ::setresuid(65534, 65534, 65534) != 0)
        std::_Exit(3);
    useProductRegistry();
    const usb::InterfaceReport report = reportOnTheCamera();
    std::fprintf(stderr, "may open %d, saw every program %d\n", report.access == usb::Outcome::done,
                 report.sawEveryProgram);
    const bool moved = setPanTiltPosition(3600, 3600) || setZoomPosition(5) || setPanTiltPosition(0, 0);
    const auto position = getPanTiltPosition();
    std::_Exit(!moved && position == ptz::kUnreadablePosition ? kNobodyMoves : kSomethingMoved);
}

/// `text` stands so many times in what was written.
MATCHER_P2(Says, text, times, "") {
    int found = 0;
    const std::string written = arg;
    std::printf("standard error of the ordinary user:\n%s\n", written.c_str());
    for (auto at = written.find(text); at != std::string::npos; at = written.find(text, at + 1)) ++found;
    return found == times;
}

class WithoutRights : public EachBackend {};
INSTANTIATE_TEST_SUITE_P(By, WithoutRights, kBothBackends, backendName);

TEST_P(WithoutRights, NothingMovesAndTheFileThatIsClosedIsNamedOnce) {
    VirtualCamera camera;
    camera.plugIn();
    const std::string name = camerasOnBus().at(0);
    const std::string file = GetParam() == Backend::uvcvideo ? captureNode(name).value() : usbNode(name);
    ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
    camera.forget();

    EXPECT_EXIT(tryAsOrdinaryUser(), ExitedWithCode(kNobodyMoves),
                AllOf(Says(file, 1), Says("may open 0, saw every program 0", 1)));
    EXPECT_TRUE(camera.transfers().empty());

    // The same user, with rights.
    ASSERT_EQ(::chmod(file.c_str(), 0666), 0);
    EXPECT_EXIT(tryAsOrdinaryUser(), ExitedWithCode(kSomethingMoved),
                AllOf(Says(file, 0), Says("may open 1, saw every program 0", 1)));
    EXPECT_FALSE(camera.transfers("SET_CUR", kPanTilt).empty());
}

}  // namespace
}  // namespace guest
