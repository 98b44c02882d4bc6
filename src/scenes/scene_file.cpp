#include "scenes/scene_file.h"

#include <QFile>
#include <QSaveFile>
#include <QString>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/fatal.h"
#include "platform/services.h"
#include "scenes/print_line.h"
#include "scenes/scene_codec.h"
#include "scenes/scene_json.h"
#include "scenes/store_paths.h"
#include "scenes/utf8.h"

namespace {

namespace fs = std::filesystem;
using scenes::printLine;

// A quarter of a million scenes; whatever is larger is not a room and would only fill the memory.
constexpr std::uintmax_t kLargestFile = std::uintmax_t{64} << 20;

constexpr std::size_t kTemporarySuffix = 7;  // ".XXXXXX"

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

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

/// The whole file; nothing for anything but a regular file of a sensible size. A pipe or a device would hang
/// the window or never end.
FileText readRegularFile(const fs::path &path) {
    using Outcome = scenes::SceneFile::Outcome;
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (failure) return cannotAccess(path, failure.value());
    if (!fs::is_regular_file(status))
        return {{}, Outcome::NotAFile, reasonFor(path, "not a regular file"), 0};
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rbe"));
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

/// Writes `text` to a temporary file beside `path` that then takes its place. Returns the reason of a
/// failure.
std::optional<std::string> replaceFile(const fs::path &path, std::string_view text) {
    const std::string name = path.string();
    QSaveFile file(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    errno = 0;
    const bool written =
        file.open(QIODevice::WriteOnly) &&
        file.write(text.data(), static_cast<qint64>(text.size())) == static_cast<qint64>(text.size()) &&
        file.flush();
    const int systemError = errno;
    if (written && file.commit()) return std::nullopt;
    // For a missing folder or a full disk the toolkit knows "Unknown error" only.
    const std::string toolkitsReason = file.errorString().toStdString();
    const std::string systemsReason = systemError == 0 ? toolkitsReason : std::strerror(systemError);
    return reasonFor(path,
                     toolkitsReason + (systemsReason == toolkitsReason ? "" : " (" + systemsReason + ")"));
}

/// The toolkit names files in UTF-8 only, and its temporary file needs room for a suffix behind the name. A
/// room whose file has another name (unpacked from an old archive, say) or a very long one is written under a
/// passing name first and then moved to its place.
std::optional<std::string> replaceFileOfAnyName(const std::string &documents, const fs::path &path,
                                                std::string_view text) {
    const bool fits = path.filename().string().size() + kTemporarySuffix <= NAME_MAX;
    if (fits && scenes::isValidUtf8(path.string())) return replaceFile(path, text);

    const fs::path folder = path.parent_path();
    const fs::path passing =
        (scenes::isValidUtf8(folder.string()) ? folder : fs::path(documents) / PresetsFolder) /
        ".escena-nueva";
    if (auto failed = replaceFile(passing, text)) return failed;
    std::error_code failure;
    fs::rename(passing, path, failure);
    if (!failure) return std::nullopt;
    std::error_code ignored;
    fs::remove(passing, ignored);
    return reasonFor(path, failure.message());
}

/// Returns the reason of a failure.
std::optional<std::string> writeInStore(const std::string &documents, const std::string &relative,
                                        std::string_view text) {
    const scenes::GuardedPath guarded = scenes::guardedPath(documents, relative);
    if (!guarded.refusal.empty()) return guarded.refusal;
    std::error_code failure;
    if (!fs::is_symlink(guarded.path, failure)) return replaceFileOfAnyName(documents, guarded.path, text);

    // A room's file that is a link stays one: what it points to is written, where that is the store's.
    const fs::path target = fs::canonical(guarded.path, failure);
    if (failure) return reasonFor(guarded.path, failure.message());
    if (!scenes::liesInStore(documents, target)) {
        return reasonFor(guarded.path, "the link leads outside the folder of scenes");
    }
    return replaceFileOfAnyName(documents, target, text);
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
    if (const auto failed = writeInStore(*documents, Path, *text)) {
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
