#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "kernel/each_backend.h"

namespace guest {
namespace {

/// What one recall, a pan/tilt order and a zoom order, asks of the system.
struct Cost {
    int systemCalls = 0;
    int allocations = 0;
};

/// The system calls until the process stops by itself, or ends.
int countSystemCalls(pid_t process) {
    constexpr int kSystemCall = SIGTRAP | 0x80;
    int stops = 0;  // one at a call's start, one at its end
    for (int status = 0;; ++stops) {
        ::ptrace(PTRACE_SYSCALL, process, nullptr, nullptr);
        ::waitpid(process, &status, 0);
        if (!WIFSTOPPED(status) || WSTOPSIG(status) != kSystemCall) return stops / 2;
    }
}

Cost costOfRecall() {
    std::FILE *const answer = std::tmpfile();
    const pid_t process = ::fork();
    if (process == 0) {
        ::dup2(::fileno(answer), STDOUT_FILENO);
        ::ptrace(PTRACE_TRACEME);
        ::execl(ZEL_RECALL, ZEL_RECALL, nullptr);
        ::_exit(127);
    }
    ::waitpid(process, nullptr, 0);
    ::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    ::ptrace(PTRACE_CONT, process, nullptr, nullptr);
    ::waitpid(process, nullptr, 0);
    Cost cost;
    cost.systemCalls = countSystemCalls(process);
    ::ptrace(PTRACE_DETACH, process, nullptr, nullptr);
    int status = 0;
    ::waitpid(process, &status, 0);
    EXPECT_EQ(status, 0) << "the camera did not go where it was sent";
    std::rewind(answer);
    EXPECT_EQ(std::fscanf(answer, "%d", &cost.allocations), 1);
    std::fclose(answer);
    return cost;
}

int devicesOnBus() {
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator("/sys/bus/usb/devices"))
        if (std::filesystem::exists(entry.path() / "idVendor")) ++count;
    return count;
}

/// The emulated machine's own controllers, which have devices of other kinds behind them and no driver so
/// far.
class ForeignDevices {
 public:
    ForeignDevices() {
        run({"modprobe", "xhci-pci"});
        requireSoon(
            "40 devices", [] { return devicesOnBus() >= 40; }, seconds(60));
        // libusb hears of each, in a thread of its own, when udev is done with it.
        run({"udevadm", "settle"});
    }
    ~ForeignDevices() { run({"modprobe", "-r", "xhci-pci"}); }
    ForeignDevices(const ForeignDevices &) = delete;
    ForeignDevices &operator=(const ForeignDevices &) = delete;
};

Cost measure(VirtualCamera &camera, Backend backend) {
    choose(backend);
    if (backend == Backend::uvcvideo)
        requireSoon("the driver's node", [] { return captureNode(camerasOnBus().at(0)).has_value(); });
    camera.forget();
    const Cost cost = costOfRecall();
    EXPECT_EQ(backendTaken(camera), backend);
    std::printf("%s, %d devices: %d system calls, %d allocations\n",
                backend == Backend::uvcvideo ? "uvcvideo" : "libusb", devicesOnBus(), cost.systemCalls,
                cost.allocations);
    return cost;
}

TEST(RecallCost, IsSmallAndTheSameHoweverManyDevicesThereAre) {
    loadDriver();
    VirtualCamera camera;
    camera.plugIn();
    const Cost driver = measure(camera, Backend::uvcvideo);
    EXPECT_LE(driver.systemCalls, 100);
    EXPECT_LE(driver.allocations, 150);
    // Each of its twelve transfers is seven system calls and one piece of memory of libusb's.
    const Cost libusb = measure(camera, Backend::libusb);
    EXPECT_LE(libusb.systemCalls, 150);
    EXPECT_LE(libusb.allocations, 170);

    const ForeignDevices others;
    for (const auto &[backend, few] :
         {std::pair(Backend::libusb, libusb), std::pair(Backend::uvcvideo, driver)}) {
        const Cost many = measure(camera, backend);
        EXPECT_LE(many.systemCalls, few.systemCalls + 2);
        // libusb lengthens its list by sixteen places at a time.
        EXPECT_LE(many.allocations, few.allocations + 4);
    }
}

}  // namespace
}  // namespace guest
