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

/// Whether the process behind `directory` has the file open; nothing when it may not be looked into. One that
/// has just ended holds nothing.
std::optional<bool> holds(const fs::path &directory, const struct stat &wanted) {
    std::error_code error;
    fs::directory_iterator entry(directory / "fd", error);
    if (error == std::errc::permission_denied) return std::nullopt;
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        struct stat open {};
        if (::stat(entry->path().c_str(), &open) == 0 && isSameFile(open, wanted)) return true;
    }
    return false;
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
    struct stat wanted {};
    if (::stat(path.c_str(), &wanted) != 0) return scan;

    std::error_code error;
    fs::directory_iterator process("/proc", error);
    for (; !error && process != fs::directory_iterator(); process.increment(error)) {
        const auto id = processIdFrom(process->path().filename().string());
        if (!id || *id == ::getpid()) continue;
        const auto held = holds(process->path(), wanted);
        if (!held) scan.sawEveryProgram = false;
        if (held.value_or(false)) scan.programs.push_back({*id, nameOf(process->path())});
    }
    std::ranges::sort(scan.programs, {}, &ProgramHolding::processId);
    return scan;
}

}  // namespace usb
