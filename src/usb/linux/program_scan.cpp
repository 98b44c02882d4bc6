#include "usb/linux/program_scan.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>

namespace usb {

namespace {

namespace fs = std::filesystem;

std::optional<int> processIdFrom(std::string_view name) {
    int id = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), id);
    if (error != std::errc() || end != name.data() + name.size()) return std::nullopt;
    return id;
}

/// A device is the same under each of its nodes, those of a container's own /dev included.
bool isSameFile(const struct stat &a, const struct stat &b) {
    if (a.st_dev == b.st_dev && a.st_ino == b.st_ino) return true;
    return S_ISCHR(a.st_mode) && S_ISCHR(b.st_mode) && a.st_rdev == b.st_rdev;
}

/// The file that is looked for.
struct Wanted {
    fs::path path;
    struct stat status {};
};

/// Whether an open file of that name may be the wanted one. Asking for the status of any other is avoided: it
/// may lie on a network share that no longer answers. Under a changed root, /dev lies elsewhere, with the
/// same names in it.
bool mayBe(const fs::path &name, const Wanted &wanted) {
    return name.native().starts_with("/dev/") || name.filename() == wanted.path.filename();
}

/// The name under which the process behind `directory` has the file open: empty when it has not, nothing when
/// it may not be looked into. One that has just ended holds nothing.
std::optional<fs::path> nameHeld(const fs::path &directory, const Wanted &wanted) {
    std::error_code error;
    fs::directory_iterator entry(directory / "fd", error);
    if (error == std::errc::permission_denied) return std::nullopt;
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code gone;
        const fs::path name = fs::read_symlink(entry->path(), gone);
        struct stat open {};
        if (!gone && mayBe(name, wanted) && ::stat(entry->path().c_str(), &open) == 0 &&
            isSameFile(open, wanted.status))
            return name;
    }
    return fs::path();
}

/// Whether the process has memory of the file's: picture buffers, where it is a video node.
bool hasMapped(const fs::path &directory, const fs::path &name) {
    const std::string ending = " " + name.native();
    std::ifstream file(directory / "maps");
    std::string line;
    while (std::getline(file, line))
        if (line.ends_with(ending)) return true;
    return false;
}

bool isOfAnotherUser(const fs::path &directory) {
    struct stat status {};
    return ::stat(directory.c_str(), &status) == 0 && status.st_uid != ::geteuid();
}

std::string nameOf(const fs::path &directory) {
    std::ifstream file(directory / "comm");
    std::string name;
    std::getline(file, name);
    return name;
}

}  // namespace

ProgramScan findProgramsHolding(const std::string &path) {
    ProgramScan scan;
    Wanted wanted{path};
    if (::stat(path.c_str(), &wanted.status) != 0) return scan;

    bool sawOthers = false;

    std::error_code error;
    fs::directory_iterator process("/proc", error);
    for (; !error && process != fs::directory_iterator(); process.increment(error)) {
        const auto id = processIdFrom(process->path().filename().string());
        if (!id || *id == ::getpid()) continue;
        sawOthers = sawOthers || isOfAnotherUser(process->path());
        const auto held = nameHeld(process->path(), wanted);
        if (!held) scan.sawEveryProgram = false;
        if (held && !held->empty())
            scan.programs.push_back({*id, nameOf(process->path()), hasMapped(process->path(), *held)});
    }
    // No machine runs without a process of root's: /proc hides it (mount option hidepid).
    if (!sawOthers && ::geteuid() != 0) scan.sawEveryProgram = false;
    std::ranges::sort(scan.programs, {}, &ProgramHolding::processId);
    return scan;
}

}  // namespace usb
