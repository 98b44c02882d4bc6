// A program that saves rooms is killed at random moments. What it had saved is there, the room that it was
// saving is the old or the new one, and the next start leaves no stray file. Every other program stands on a
// disk without locks, as some network disks are.
//   kill [KILLS [SEED]]
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstddef>
#include <random>
#include <thread>

#include "support/store.h"

namespace {

namespace fs = std::filesystem;
using scenes::SceneTree;

unsigned seed = std::random_device{}();
int killed = 0;

[[noreturn]] void fail(const std::string &what) {
    std::fprintf(stderr, "kill: seed %u, after %d killed: %s\n", seed, killed, what.c_str());
    std::_Exit(1);  // the store stays where it is
}

/// What the program tells of itself, in memory that survives it.
struct Progress {
    std::atomic<int> start;  ///< 1: it found what it should; -1: it did not
    std::atomic<int> begun;
    std::atomic<int> done;
};

struct Save {
    std::string centre, room;
    std::vector<ManualPreset> scenes;
    void into(SceneTree &tree) const { tree[centre][room] = scenes; }
};

constexpr std::array kCentres = {" Sin grupo", "Norte", "Ático"};
constexpr std::array kRooms = {"Suelta", "Aula Ñ", "la más larga"};

/// The next save of a program: both sides draw the same.
Save drawSave(std::mt19937 &random) {
    Save save{kCentres.at(random() % 3), kRooms.at(random() % 3), {}};
    const unsigned most = random() % 8 == 0 ? 600 : 20;
    for (auto left = random() % most; left > 0; --left)
        save.scenes.push_back(
            support::scene("Posición " + std::to_string(random()), static_cast<int>(random())));
    return save;
}

/// From now on the system refuses locks.
bool moveToPoorDisk() {
    sock_filter rules[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                           BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_flock, 0, 1),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    const sock_fprog program{std::size(rules), rules};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

class Bench : public support::Store {
 public:
    Bench() {
        for (const char *centre : kCentres) {
            storeCentre(centre);
            tree_[centre];
        }
    }

    void killOne() {
        random_.seed(seed + static_cast<unsigned>(killed));
        // Now and then a room is not there yet.
        if (random_() % 4 == 0 && tree_["Norte"].erase("Aula Ñ") != 0)
            fs::remove(store() / "Norte/Aula Ñ.presets");
        const std::chrono::duration<double, std::micro> delay(
            std::exp2(4 + static_cast<int>(random_() % 900) / 100.0));

        new (progress_) Progress{};
        const pid_t program = ::fork();
        if (program == 0) run();
        while (progress_->start == 0 && ::waitpid(program, nullptr, WNOHANG) == 0)
            std::this_thread::sleep_for(std::chrono::microseconds(20));
        if (progress_->start != 1) fail("does not start on what the last one left");
        std::this_thread::sleep_for(delay);
        ::kill(program, SIGKILL);
        ::waitpid(program, nullptr, 0);
        ++killed;
        examine();
    }

    void lastStart() {
        if (obtenerPresets() != tree_ || !strays().empty()) fail("the last start");
    }

    int saves = 0, inside = 0, amid = 0, replaced = 0;

 private:
    [[noreturn]] void run() {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        bool isReady = true;
        if (killed % 2 != 0) {
            const auto young = strays();
            isReady = moveToPoorDisk() && obtenerPresets() == tree_ && strays() == young;
            for (const fs::path &stray : young)  // a day passes
                fs::last_write_time(stray, fs::file_time_type::clock::now() - std::chrono::hours(25));
        }
        progress_->start = isReady && obtenerPresets() == tree_ && strays().empty() ? 1 : -1;
        while (true) {
            const Save save = drawSave(random_);
            ++progress_->begun;
            PresetToFile(scenes::roomPath(save.centre, save.room), save.scenes);
            ++progress_->done;
        }
    }

    void examine() {
        for (saves += progress_->done; progress_->done > 0; --progress_->begun, --progress_->done)
            drawSave(random_).into(tree_);
        SceneTree other = tree_;
        if (progress_->begun > 0) drawSave(random_).into(other);
        inside += progress_->begun;

        // Locked as by a running program, so that it stays while the store is read.
        const auto left = strays();
        const int stray = left.empty() ? -1 : ::open(left[0].c_str(), O_RDWR | O_CLOEXEC);
        if (!left.empty() && ::flock(stray, LOCK_EX | LOCK_NB) != 0) fail("a dead program's lock");
        const SceneTree found = obtenerPresets();
        if (strays() != left || (found != tree_ && (found != other || !left.empty())))
            fail("neither the old nor the new rooms in " + store().string());
        ::close(stray);
        amid += left.empty() ? 0 : 1;
        replaced += found == tree_ ? 0 : 1;
        tree_ = found;
    }

    [[nodiscard]] std::vector<fs::path> strays() const {
        std::vector<fs::path> found;
        for (const auto &entry : fs::recursive_directory_iterator(store()))
            if (entry.is_regular_file() && entry.path().extension() != ".presets") found.push_back(entry);
        return found;
    }

    std::mt19937 random_;
    SceneTree tree_;
    Progress *progress_ = static_cast<Progress *>(
        ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
};

}  // namespace

int main(int argc, char **argv) {
    const int kills = argc > 1 ? std::atoi(argv[1]) : 10'000;
    if (argc > 2) seed = static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10));
    std::printf("kill: %d times, seed %u\n", kills, seed);
    std::fflush(stdout);
    Bench bench;
    while (killed < kills) bench.killOne();
    bench.lastStart();
    std::printf(
        "kill: %d killed, after %d whole saves; %d inside a save, %d of them between making the new file and "
        "renaming it, %d behind\n",
        killed, bench.saves, bench.inside, bench.amid, bench.replaced);
    if (kills >= 100 && (bench.amid == 0 || bench.replaced == 0))
        fail("no kill has hit a save in its middle");
}
