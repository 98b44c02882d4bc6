#include "scenes/scene_reading.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <system_error>
#include <tuple>
#include <utility>

#include "scenes/file_handle.h"
#include "scenes/scene_codec.h"

namespace scenes {
namespace {

namespace fs = std::filesystem;
using Outcome = SceneFile::Outcome;

// Room for a quarter of a million scenes. A larger file is not a scene file and would only fill the memory.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} << 20;

std::string reasonFor(const fs::path &path, const std::string &reason) {
    return path.string() + ": " + reason;
}

struct FileText {
    std::optional<std::string> content;
    Outcome failure = Outcome::inaccessible;
    std::string error;
    int systemError = 0;
};

FileText cannotAccess(const fs::path &path, int systemError) {
    return {{}, Outcome::inaccessible, reasonFor(path, std::strerror(systemError)), systemError};
}

/// Reads regular files only: a pipe would block the window, and a device may never end.
FileText readRegularFile(const fs::path &path) {
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (failure) return cannotAccess(path, failure.value());
    if (!fs::is_regular_file(status))
        return {{}, Outcome::notAFile, reasonFor(path, "not a regular file"), 0};
    const FileHandle file(std::fopen(path.c_str(), "rbe"));
    if (!file) return cannotAccess(path, errno);

    // Read in one go: a buffer of the stream's own would be one more copy.
    std::ignore = std::setvbuf(file.get(), nullptr, _IONBF, 0);
    std::string content;
    std::array<char, 1 << 14> piece{};
    for (std::size_t got = piece.size(); got == piece.size();) {
        got = std::fread(piece.data(), 1, piece.size(), file.get());
        // A large file's text grows in one place.
        if (content.size() == piece.size())
            content.reserve(std::min(fs::file_size(path, failure), kLargestFile));
        content.append(piece.data(), got);
        if (content.size() > kLargestFile)
            return {{}, Outcome::tooLarge, reasonFor(path, "too large for a scene file"), 0};
    }
    if (std::ferror(file.get()) != 0) return cannotAccess(path, errno);
    return {std::move(content), {}, {}, 0};
}

}  // namespace

SceneFile readSceneFile(const fs::path &path) {
    FileText text = readRegularFile(path);
    if (!text.content) return {text.failure, {}, std::move(text.error), text.systemError};
    const bool isEmpty = text.content->empty();
    DecodedScenes decoded = decodeSceneText(*std::move(text.content));
    switch (decoded.outcome) {
        case DecodedScenes::Outcome::read:
            return {Outcome::read, std::move(decoded.presets), {}, 0};
        case DecodedScenes::Outcome::unreadable:
            return {isEmpty ? Outcome::empty : Outcome::noScenes, {}, std::move(decoded.error), 0};
        case DecodedScenes::Outcome::fatal:
            break;
    }
    return {Outcome::fatal, {}, {}, 0};
}

}  // namespace scenes
