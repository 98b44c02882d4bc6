#include "scenes/store_paths.h"

#include <algorithm>
#include <system_error>

#include "scenes/name_order.h"

namespace scenes {
namespace {

namespace fs = std::filesystem;

/// A part that is empty, "." or "..": such a path is another name of a file or folder that has a name
/// already.
bool hasAliasingPart(std::string_view relative) {
    while (true) {
        const std::string_view part = relative.substr(0, relative.find('/'));
        if (part.empty() || part == "." || part == "..") return true;
        if (part.size() == relative.size()) return false;
        relative.remove_prefix(part.size() + 1);
    }
}

/// Why `path`, links followed as far as they exist, is not `folder` or something below it; empty when it is.
std::string whyOutside(const fs::path &path, const fs::path &folder) {
    std::error_code failure;
    const fs::path realFolder = fs::weakly_canonical(folder, failure);
    if (failure) return folder.string() + ": " + failure.message();
    const fs::path real = fs::weakly_canonical(path, failure);
    if (failure) return path.string() + ": " + failure.message();
    const auto parted = std::mismatch(realFolder.begin(), realFolder.end(), real.begin(), real.end());
    return parted.first == realFolder.end() ? "" : path.string() + " lies outside " + folder.string();
}

/// The folder that no change may reach out of.
fs::path limitOf(const std::string &documents, std::string_view relative) {
    return relative.starts_with(PresetsFolder + "/") ? documents + "/" + PresetsFolder : documents;
}

}  // namespace

std::string centrePath(const std::string &centre) {
    return PresetsFolder + "/" + centre;
}

std::string roomPath(const std::string &centre, const std::string &room) {
    const std::string file = room + ".presets";
    return sameName(centre, kNoCentre) ? PresetsFolder + "/" + file : centrePath(centre) + "/" + file;
}

GuardedPath guardedPath(const std::string &documents, std::string_view relative) {
    if (relative.find('\0') != std::string_view::npos) {
        // The system would see only the part before it, which may be the whole store.
        return {{}, "the name holds a zero byte", false};
    }
    const fs::path store = documents + "/" + PresetsFolder;
    if (relative == PresetsFolder || relative == PresetsFolder + "/") return {store, {}, true};
    const fs::path path = documents + "/" + std::string(relative);
    if (hasAliasingPart(relative)) {
        return {path, path.string() + " has a part that is empty, \".\" or \"..\"", false};
    }
    return {path, whyOutside(path.parent_path(), limitOf(documents, relative)), false};
}

GuardedPath guardedFile(const std::string &documents, std::string_view relative) {
    GuardedPath guarded = guardedPath(documents, relative);
    if (guarded.isStore) guarded.refusal = guarded.path.string() + " is the folder of scenes itself";
    std::error_code failure;
    if (!guarded.refusal.empty() || !fs::is_symlink(guarded.path, failure)) return guarded;

    const fs::path target = fs::canonical(guarded.path, failure);
    if (failure) return {guarded.path, guarded.path.string() + ": " + failure.message(), false};
    return {target, whyOutside(target, limitOf(documents, relative)), false};
}

}  // namespace scenes
