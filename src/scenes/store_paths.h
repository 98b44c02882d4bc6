#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// Name of the scene store's folder under Documents.
inline const std::string PresetsFolder = "Presets";

namespace scenes {

/// The centre under which rooms without a centre are shown. Never a directory: their files lie in Presets
/// itself.
inline const std::string kNoCentre = " Sin grupo";

/// Path of a centre's directory, relative to Documents.
[[nodiscard]] std::string centrePath(const std::string &centre);

/// Path of a room's scene file, relative to Documents: "Presets/Norte/Sala.presets", "Presets/Sala.presets"
/// for the placeholder centre.
[[nodiscard]] std::string roomPath(const std::string &centre, const std::string &room);

/// A place of the store that may be changed, or why it may not.
struct GuardedPath {
    std::filesystem::path path;  ///< absolute, without "." and ".." parts and without a trailing "/"
    std::string refusal;         ///< empty: `path` may be changed
    bool isStore = false;        ///< `path` is the store's own folder
};

/// Names are typed by people and become parts of paths, so "../.." is a name like any other. Everything that
/// creates, replaces or removes goes through here: `relative` (to `documents`) is refused when it leaves the
/// store's folder, be it by ".." or by a symbolic link on the way. The store's folder itself may be a link,
/// and the last part may be one too: it is not followed.
[[nodiscard]] GuardedPath guardedPath(const std::string &documents, std::string_view relative);

/// True when `path`, links followed as far as they exist, lies in the store's folder under `documents`.
[[nodiscard]] bool liesInStore(const std::string &documents, const std::filesystem::path &path);

}  // namespace scenes
