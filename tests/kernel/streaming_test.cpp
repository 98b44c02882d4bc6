#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "kernel/each_backend.h"
#include "kernel/product_registry.h"

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
    };
    /// "cap dqbuf: 2 seq: 14 bytesused: 38400 ts: ...", with "error" among its flags for a damaged one.
    [[nodiscard]] Frames frames() const {
        Frames frames;
        std::istringstream lines(program_.output());
        for (std::string line; std::getline(lines, line);) {
            int bytes = 0;
            const auto start = std::min(line.find("cap dqbuf:"), line.size());
            if (std::sscanf(line.c_str() + start, "cap dqbuf: %*d seq: %*d bytesused: %d", &bytes) != 1)
                continue;
            const bool whole = bytes == 38400 && line.find("error") == std::string::npos;
            (whole ? frames.whole : frames.damaged) += 1;
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

TEST(Streaming, GoesOnUndisturbedWhileScenesAreRecalled) {
    constexpr int kFrames = 300;
    loadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const std::string node = captureNode(camerasOnBus().at(0)).value();
    const auto before = identity(node);
    camera.forget();

    // By another path, as a program in a container has it.
    run({"cp", "-R", node, "/run"});
    Viewer viewer("/run" + node.substr(4), kFrames);
    viewer.waitForFrames(1);
    const auto report = reportOnTheCamera();
    ASSERT_EQ(report.programs.size(), 1u);
    EXPECT_EQ(report.programs.front().name, "v4l2-ctl");
    EXPECT_TRUE(report.programs.front().streams);

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
    std::printf("%d frames, %d damaged, during %d recalls of a scene\n", frames.whole, frames.damaged,
                recalls);
    EXPECT_EQ(frames.whole, kFrames);
    EXPECT_EQ(frames.damaged, 0);
    EXPECT_EQ(viewer.program().output().find("failed"), std::string::npos) << viewer.program().output();
    EXPECT_GE(recalls, 20);
    EXPECT_EQ(static_cast<int>(camera.transfers("SET_CUR", kPanTilt).size()), recalls);
    EXPECT_EQ(camera.count("stream-start"), 1);
    EXPECT_EQ(camera.count("detach"), 0);
}

TEST(Streaming, UnpluggedInTheMiddleOfItTheNodeIsFoundUnderItsNextNumber) {
    loadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const std::string first = captureNode(camerasOnBus().at(0)).value();
    // While the viewer holds the dead node, its number is not given again.
    Viewer viewer(first, 100000);
    viewer.waitForFrames(1);
    viewer.program().signal(SIGSTOP);
    camera.pullOut();
    EXPECT_FALSE(setZoomPosition(9));
    EXPECT_EQ(getPanTiltPosition(), std::nullopt);
    camera.plugIn();

    EXPECT_NE(captureNode(camerasOnBus().at(0)).value(), first);
    EXPECT_TRUE(setZoomPosition(321));
    EXPECT_EQ(getZoomPosition(), "321");
    viewer.program().signal(SIGCONT);
}

}  // namespace
}  // namespace guest
