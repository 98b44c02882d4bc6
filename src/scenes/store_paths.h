#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "scenes/presets_folder.h"

namespace scenes {

/// The centre under which rooms without a centre are shown. Never a folder: their files lie in Presets
/// itself.
inline const std::string kNoCentre = " Sin grupo";

/// Path of a centre's folder, relative to Documents.
[[nodiscard]] std::string centrePath(const std::string &centre);

/// Path of a room's scene file, relative to Documents: "Presets/Norte/Sala.presets", "Presets/Sala.presets"
/// for the placeholder centre.
[[nodiscard]] std::string roomPath(const std::string &centre, const std::string &room);

/// A place that may be changed, or why it may not.
struct GuardedPath {
    std::filesystem::path path;  ///< absolute
    std::string refusal;         ///< one line; empty: `path` may be changed
    bool isStore = false;        ///< `path` is the store's own folder
};

/// Names are typed by people and become parts of paths, so "../.." is a name like any other. Everything that
/// creates, replaces or removes something goes through here. `relative` (to `documents`) is refused when one
/// of its parts is empty, "." or "..": it would be a second name of something else. It is also refused when a
/// symbolic link on the way leads out of the store or, for a path beside the store, out of `documents`. The
/// store's folder itself ("Presets" or "Presets/") may be a link. The last part may be one too: it is not
/// followed.
[[nodiscard]] GuardedPath guardedPath(const std::string &documents, std::string_view relative);

/// The same for a file that is to be written: a link in the last part is followed, and must not lead out
/// either. The store's own folder is refused.
[[nodiscard]] GuardedPath guardedFile(const std::string &documents, std::string_view relative);

}  // namespace scenes
