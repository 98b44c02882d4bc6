// From the start of a process to its first window on the screen, beside a program with a bare window; and how
// much memory it takes then. The platform is X11, since an X server tells others when a window is mapped.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

#include "comparison.h"
#include "process_memory.h"
#include "temporary_store.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kPatience = 10s;
/// In which a program that has shown its window comes to rest.
constexpr auto kRest = 300ms;

/// Tells of windows that appear on the screen.
class Screen {
 public:
    Screen() {
        if (!isThere()) return;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_.get(), root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(connection_.get());
    }

    [[nodiscard]] bool isThere() const { return xcb_connection_has_error(connection_.get()) == 0; }

    [[nodiscard]] bool waitForWindow() {
        const auto end = Clock::now() + kPatience;
        while (Clock::now() < end) {
            const Event event(xcb_poll_for_event(connection_.get()), &std::free);
            if (event && (event->response_type & 0x7F) == XCB_MAP_NOTIFY) return true;
            pollfd there{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
            if (!event) ::poll(&there, 1, 100);
        }
        return false;
    }
    void forget() {
        while (Event(xcb_poll_for_event(connection_.get()), &std::free)) {
        }
    }

 private:
    using Event = std::unique_ptr<xcb_generic_event_t, decltype(&std::free)>;

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_{xcb_connect(nullptr, nullptr),
                                                                             &xcb_disconnect};
};

/// Milliseconds that the threads of a process have run, whatever else the machine had to do.
double processorMilliseconds(pid_t process) {
    double nanoseconds = 0;
    std::error_code ignored;
    for (const auto &thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task", ignored)) {
        double own = 0;
        if (std::ifstream(thread.path() / "schedstat") >> own) nanoseconds += own;
    }
    return nanoseconds / 1e6;
}

void start(benchmark::State &state, const char *program, const char *argument, std::int64_t scenes) {
    static Screen screen;
    if (!screen.isThere()) return state.SkipWithError("no X server");
    const bench::TemporaryStore &store = bench::storeOf(scenes);
    ::setenv("HOME", store.home().c_str(), 1);
    // They would lead the program to the person's own Documents.
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) ::unsetenv(variable);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    std::string path = program;
    std::string first = argument;
    char *const arguments[] = {path.data(), first.empty() ? nullptr : first.data(), nullptr};
    for (auto _ : state) {
        screen.forget();
        pid_t process = 0;
        const auto begin = Clock::now();
        if (::posix_spawn(&process, program, nullptr, nullptr, arguments, environ) != 0)
            return state.SkipWithError("not started");
        const bool isShown = screen.waitForWindow();
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
        state.counters["ms"] = processorMilliseconds(process);
        std::this_thread::sleep_for(kRest);
        state.counters["MB"] = bench::megabytes(std::to_string(process), "VmRSS:");
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
        if (!isShown) return state.SkipWithError("no window; or a copy runs that took the start over");
    }
}

void BM_Start(benchmark::State &state) {
    start(state, ZEL_PROGRAM, "", state.range(0));
}
void BM_StartBare(benchmark::State &state) {
    start(state, ZEL_BARE_WINDOW, "", 0);
}
void BM_StartPlain(benchmark::State &state) {
    start(state, ZEL_BARE_WINDOW, "with widgets", 0);
}

void fewTimes(benchmark::internal::Benchmark *rounds) {
    rounds->Iterations(1)->Repetitions(20)->UseManualTime();
}
BENCHMARK(BM_Start)->Arg(0)->Arg(1000)->Apply(fewTimes);
BENCHMARK(BM_StartBare)->Apply(fewTimes);
BENCHMARK(BM_StartPlain)->Apply(fewTimes);

}  // namespace
