#include "scenes/store_paths.h"

#include <algorithm>
#include <system_error>

#include "scenes/name_order.h"

namespace scenes {
namespace {

namespace fs = std::filesystem;

/// Without "." and ".." parts and without a trailing "/".
fs::path normalized(const fs::path &path) {
    const fs::path normal = path.lexically_normal();
    return normal.has_filename() ? normal : normal.parent_path();
}

fs::path storeFolder(const std::string &documents) {
    return normalized(documents + "/" + PresetsFolder);
}

/// `folder` itself does not lie below it.
bool liesBelow(const fs::path &path, const fs::path &folder) {
    const auto parted = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return parted.first == folder.end() && parted.second != path.end();
}

}  // namespace

std::string centrePath(const std::string &centre) {
    return PresetsFolder + "/" + centre;
}

std::string roomPath(const std::string &centre, const std::string &room) {
    const std::string file = room + ".presets";
    return sameName(centre, kNoCentre) ? PresetsFolder + "/" + file : centrePath(centre) + "/" + file;
}

bool liesInStore(const std::string &documents, const fs::path &path) {
    std::error_code storeError;
    std::error_code pathError;
    const fs::path store = normalized(fs::weakly_canonical(storeFolder(documents), storeError));
    const fs::path real = normalized(fs::weakly_canonical(path, pathError));
    return !storeError && !pathError && (real == store || liesBelow(real, store));
}

GuardedPath guardedPath(const std::string &documents, std::string_view relative) {
    if (relative.find('\0') != std::string_view::npos) {
        // The system would see the part before it only, which may be the whole store.
        return {{}, "the name holds a zero byte", false};
    }
    const fs::path path = normalized(documents + "/" + std::string(relative));
    const fs::path store = storeFolder(documents);
    if (path == store) return {path, {}, true};
    if (!liesBelow(path, store) || !liesInStore(documents, path.parent_path())) {
        return {path, path.string() + " lies outside the folder of scenes", false};
    }
    return {path, {}, false};
}

}  // namespace scenes
