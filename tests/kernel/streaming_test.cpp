#include <sys/stat.h>

#include <algorithm>
#include <regex>

#include "kernel/each_way.h"
#include "usb/system_registry.h"

namespace guest {
namespace {

/// Another program that shows the camera's picture.
class Viewer {
 public:
    Viewer(const std::string &node, int frames)
        : program_({"v4l2-ctl", "-d", node, "--verbose", "--stream-mmap", "--stream-count",
                    std::to_string(frames), "--stream-to", "/dev/null"},
                   "viewer.txt") {}

    struct Frames {
        int whole = 0;
        int damaged = 0;
        int lost = 0;
    };
    /// "cap dqbuf: 2 seq: 14 bytesused: 38400 ts: ...", with "error" among its flags for a damaged one.
    [[nodiscard]] Frames frames() const {
        static const std::regex kFrame("cap dqbuf: *\\d+ seq: *(\\d+) bytesused: *(\\d+)(.*)");
        Frames frames;
        int expected = -1;
        const std::string text = program_.output();
        for (std::sregex_iterator match(text.begin(), text.end(), kFrame), end; match != end; ++match) {
            const bool whole = (*match)[2] == "38400" && (*match)[3].str().find("error") == std::string::npos;
            (whole ? frames.whole : frames.damaged) += 1;
            const int number = std::stoi((*match)[1]);
            if (expected >= 0) frames.lost += number - expected;
            expected = number + 1;
        }
        return frames;
    }
    void waitForFrames(int number) const {
        requireSoon("a picture", [&] { return frames().whole >= number; });
    }

    Background &program() { return program_; }

 private:
    Background program_;
};

/// Tells the node from a later one of the same name, which has another change time.
std::pair<ino_t, long> identity(const std::string &node) {
    struct stat status {};
    EXPECT_EQ(::stat(node.c_str(), &status), 0) << node;
    return {status.st_ino, status.st_ctim.tv_nsec};
}

std::optional<usb::InterfaceReport> reportOnTheCamera() {
    const auto registry = usb::makeSystemRegistry();
    const auto devices = registry->devices();
    if (!devices) return std::nullopt;
    for (const auto &device : *devices)
        if (device->videoControl()) return registry->inspectInterface(device->locationId().value_or(0));
    return std::nullopt;
}

TEST(Streaming, GoesOnUndisturbedWhileScenesAreRecalled) {
    constexpr int kFrames = 300;
    loadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const std::string node = captureNode(camerasOnBus().at(0)).value();
    const auto before = identity(node);
    camera.forget();

    Viewer viewer(node, kFrames);
    viewer.waitForFrames(1);
    const auto report = reportOnTheCamera();
    ASSERT_TRUE(report && report->programs.size() == 1);
    EXPECT_EQ(report->programs.front().name, "v4l2-ctl");
    EXPECT_TRUE(report->programs.front().streams);

    int recalls = 0;
    while (viewer.program().isRunning() && recalls < 1000) {
        ++recalls;
        ASSERT_TRUE(setPanTiltPosition(3600 * (recalls % 100), 0));
        ASSERT_TRUE(setZoomPosition(recalls));
        ASSERT_EQ(getZoomPosition(), std::to_string(recalls));
        ASSERT_EQ(identity(node), before);
    }
    EXPECT_EQ(viewer.program().waitForEnd(seconds(1)), 0);

    const Viewer::Frames frames = viewer.frames();
    std::printf("%d frames, %d damaged, %d lost, during %d recalls of a scene\n", frames.whole,
                frames.damaged, frames.lost, recalls);
    EXPECT_EQ(frames.whole, kFrames);
    EXPECT_EQ(frames.damaged, 0);
    EXPECT_EQ(viewer.program().output().find("failed"), std::string::npos) << viewer.program().output();
    EXPECT_GE(recalls, 20);
    EXPECT_EQ(static_cast<int>(camera.transfers("SET_CUR", kPanTilt).size()), recalls);
    EXPECT_EQ(camera.count("stream-start"), 1);
    EXPECT_EQ(camera.count("detach"), 0);
}

TEST(Streaming, UnpluggedInTheMiddleOfItAndPluggedInAgain) {
    loadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const std::string node = captureNode(camerasOnBus().at(0)).value();
    Viewer viewer(node, 100000);
    viewer.waitForFrames(5);

    camera.pullOutWithoutWaiting();
    // The first calls may still see the camera.
    requireSoon(
        "a refusal", [] { return !setPanTiltPosition(3600, 3600); }, seconds(5));
    camera.waitUntilGone();
    EXPECT_FALSE(setZoomPosition(9));
    EXPECT_EQ(getPanTiltPosition(), std::nullopt);
    std::ignore = viewer.program().waitForEnd(seconds(10));

    camera.plugIn();
    camera.forget();
    EXPECT_TRUE(setPanTiltPosition(36000, 0));
    EXPECT_EQ(getPanTiltPosition(), "36000,0");
    EXPECT_EQ(wayTaken(camera), Way::uvcvideo);
}

TEST(Streaming, ANodeThatComesBackUnderAnotherNumberIsFound) {
    loadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const std::string first = captureNode(camerasOnBus().at(0)).value();
    // While the viewer holds the dead node, its number is not given again.
    Viewer viewer(first, 100000);
    viewer.waitForFrames(1);
    viewer.program().signal(SIGSTOP);
    camera.pullOut();
    camera.plugIn();

    EXPECT_NE(captureNode(camerasOnBus().at(0)).value(), first);
    EXPECT_TRUE(setZoomPosition(321));
    EXPECT_EQ(getZoomPosition(), "321");
    viewer.program().signal(SIGCONT);
}

}  // namespace
}  // namespace guest
