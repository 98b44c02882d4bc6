#include "scenes/file_replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QRandomGenerator>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <tuple>

#include "scenes/file_handle.h"

namespace scenes {
namespace {

namespace fs = std::filesystem;

// The name of a temporary file: this and as many hexadecimal digits. A room's file ends in "presets", a
// folder is not a regular file: nothing that people name in the window is ever taken for one.
constexpr std::string_view kPrefix = ".escena-nueva.";
constexpr std::size_t kDigits = 16;

// A temporary file that vanishes before it is renamed is written again.
constexpr int kAttempts = 3;

// No save takes so long, not even where the disk's clock is not ours.
constexpr auto kLongestSave = std::chrono::hours(24);

std::string temporaryName() {
    std::array<char, kDigits + 1> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx",
                  static_cast<unsigned long long>(QRandomGenerator::system()->generate64()));
    return std::string(kPrefix) + digits.data();
}

bool isTemporaryName(std::string_view name) {
    return name.starts_with(kPrefix) && name.size() == kPrefix.size() + kDigits &&
           name.find_first_not_of("0123456789abcdef", kPrefix.size()) == std::string_view::npos;
}

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// A lock of its own on an open file, which ends with the process at the latest.
bool lock(std::FILE *file) {
    return ::flock(::fileno(file), LOCK_EX | LOCK_NB) == 0;
}

std::error_code fill(std::FILE *file, std::string_view text, std::optional<mode_t> mode) {
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size() || std::fflush(file) != 0)
        return lastError();
    // Some disks keep no access mode; the scenes matter more.
    if (mode) std::ignore = ::fchmod(::fileno(file), *mode);
    // EINVAL: a file system that does not support fsync.
    if (::fsync(::fileno(file)) != 0 && errno != EINVAL) return lastError();
    return {};
}

/// A new temporary file in `folder`, locked; `path` is its path. A program that starts may take it for
/// abandoned between its creation and its lock: then it has no name any more, and another one is made. On a
/// disk without locks nobody can get one, so nobody clears the file away before it is old.
FileHandle makeTemporary(const fs::path &folder, fs::path &path) {
    FileHandle file(nullptr);
    bool isTaken = true;
    for (int attempt = 0; isTaken && attempt < 100; ++attempt) {
        path = folder / temporaryName();
        file.reset(std::fopen(path.c_str(), "wbxe"));
        if (!file) break;
        // Waits for whoever clears away, who is done in a moment.
        std::ignore = ::flock(::fileno(file.get()), LOCK_EX);
        struct stat found {};
        isTaken = ::fstat(::fileno(file.get()), &found) == 0 && found.st_nlink == 0;
    }
    return file;
}

std::error_code replaceOnce(const fs::path &path, std::string_view text, std::optional<mode_t> mode) {
    fs::path temporary;
    const FileHandle file = makeTemporary(path.parent_path(), temporary);
    if (!file) return lastError();

    std::error_code failure = fill(file.get(), text, mode);
    if (!failure && std::rename(temporary.c_str(), path.c_str()) != 0) failure = lastError();
    if (failure) {
        ::unlink(temporary.c_str());
    } else {
        flushFolder(path.parent_path());
    }
    return failure;
}

bool isOld(const fs::path &path) {
    std::error_code failure;
    const auto written = fs::last_write_time(path, failure);
    return !failure && written < fs::file_time_type::clock::now() - kLongestSave;
}

/// Removes a temporary file that no program writes any more: its lock can be had. Where there are no locks,
/// or the file's mode keeps us from opening it, its age tells.
void removeIfAbandoned(const fs::path &path) {
    // Opened for writing since some network disks lock only then.
    const FileHandle file(std::fopen(path.c_str(), "r+be"));
    const bool isOurs = file && lock(file.get());
    const bool isLockedByOthers = file && !isOurs && errno == EWOULDBLOCK;
    if (isOurs || (!isLockedByOthers && isOld(path))) ::unlink(path.c_str());
}

}  // namespace

std::error_code replaceFile(const fs::path &path, std::string_view text) {
    std::optional<mode_t> mode;
    struct stat old {};
    if (::stat(path.c_str(), &old) == 0) {
        if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return lastError();
        mode = old.st_mode & 07777;
    }
    std::error_code failure;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        failure = replaceOnce(path, text, mode);
        // A program on another machine, which does not see the lock, may have taken the file for abandoned.
        if (failure != std::errc::no_such_file_or_directory) break;
    }
    return failure;
}

void flushFolder(const fs::path &folder) {
    const FileHandle handle(std::fopen(folder.c_str(), "re"));
    if (handle) std::ignore = ::fsync(::fileno(handle.get()));
}

void removeAbandonedFiles(const fs::path &folder) {
    std::error_code failure;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, failure);
    for (; !failure && entry != fs::recursive_directory_iterator(); entry.increment(failure)) {
        const fs::path &path = entry->path();
        std::error_code ignored;
        if (isTemporaryName(path.filename().string()) && fs::is_regular_file(entry->symlink_status(ignored)))
            removeIfAbandoned(path);
    }
}

}  // namespace scenes
