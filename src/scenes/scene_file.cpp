#include "scenes/scene_file.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/fatal.h"
#include "platform/services.h"
#include "scenes/file_handle.h"
#include "scenes/file_replacement.h"
#include "scenes/print_line.h"
#include "scenes/scene_codec.h"
#include "scenes/scene_json.h"
#include "scenes/store_paths.h"

namespace {

namespace fs = std::filesystem;
using scenes::printLine;

// Room for a quarter of a million scenes. A larger file is not a scene file and would only fill the memory.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} << 20;

std::string reasonFor(const fs::path &path, const std::string &reason) {
    return path.string() + ": " + reason;
}

struct FileText {
    std::optional<std::string> content;
    scenes::SceneFile::Outcome failure = scenes::SceneFile::Outcome::Inaccessible;
    std::string error;
    int systemError = 0;
};

FileText cannotAccess(const fs::path &path, int systemError) {
    return {{},
            scenes::SceneFile::Outcome::Inaccessible,
            reasonFor(path, std::strerror(systemError)),
            systemError};
}

/// Reads regular files only: a pipe would block the window, and a device may never end.
FileText readRegularFile(const fs::path &path) {
    using Outcome = scenes::SceneFile::Outcome;
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (failure) return cannotAccess(path, failure.value());
    if (!fs::is_regular_file(status))
        return {{}, Outcome::NotAFile, reasonFor(path, "not a regular file"), 0};
    const scenes::FileHandle file(std::fopen(path.c_str(), "rbe"));
    if (!file) return cannotAccess(path, errno);

    std::string content;
    std::array<char, 1 << 14> piece{};
    while (const std::size_t got = std::fread(piece.data(), 1, piece.size(), file.get())) {
        content.append(piece.data(), got);
        if (content.size() > kLargestFile)
            return {{}, Outcome::TooLarge, reasonFor(path, "too large for a scene file"), 0};
    }
    if (std::ferror(file.get()) != 0) return cannotAccess(path, errno);
    return {std::move(content), {}, {}, 0};
}

/// Returns the reason of a failure.
std::optional<std::string> writeText(const std::string &documents, const std::string &relative,
                                     std::string_view text) {
    const scenes::GuardedPath guarded = scenes::guardedFile(documents, relative);
    if (!guarded.refusal.empty()) return guarded.refusal;
    const std::error_code failure = scenes::replaceFile(guarded.path, text);
    if (failure) return reasonFor(guarded.path, failure.message());
    return std::nullopt;
}

std::vector<ManualPreset> cantRead(const std::string &error) {
    printLine("cant read… " + error);
    return {};
}

}  // namespace

void PresetToFile(const std::string &Path, const std::vector<ManualPreset> &arrayPresets) {
    std::string error;
    const auto json = scenes::jsonFromPresets(arrayPresets, error);
    if (!json) return printLine("Error tr " + error);
    const auto text = scenes::sceneTextFromJson(*json);
    if (!text) return;

    const auto documents = platform::services().folders->documents();
    if (!documents) return printLine("Error 34 ");
    if (const auto failed = writeText(*documents, Path, *text)) {
        printLine("cant write...");
        printLine(*failed);
    }
}

std::vector<ManualPreset> FileToPreset(const std::string &Path) {
    const auto documents = platform::services().folders->documents();
    if (!documents) return {};
    if (Path.find('\0') != std::string::npos) return cantRead("the name holds a zero byte");

    scenes::SceneFile file = scenes::readSceneFile(*documents + "/" + Path);
    if (file.outcome == scenes::SceneFile::Outcome::Fatal) platform::fatalStop();
    if (file.outcome != scenes::SceneFile::Outcome::Read) return cantRead(file.error);
    return std::move(file.presets);
}

scenes::SceneFile scenes::readSceneFile(const std::filesystem::path &path) {
    FileText text = readRegularFile(path);
    if (!text.content) return {text.failure, {}, std::move(text.error), text.systemError};
    DecodedScenes decoded = decodeSceneText(*text.content);
    switch (decoded.outcome) {
        case DecodedScenes::Outcome::Read:
            return {SceneFile::Outcome::Read, std::move(decoded.presets), {}, 0};
        case DecodedScenes::Outcome::Unreadable:
            return {text.content->empty() ? SceneFile::Outcome::Empty : SceneFile::Outcome::NoScenes,
                    {},
                    std::move(decoded.error),
                    0};
        case DecodedScenes::Outcome::Fatal:
            break;
    }
    return {SceneFile::Outcome::Fatal, {}, {}, 0};
}
