#pragma once

#include <string>
#include <vector>

#include "scenes/presets_folder.h"
#include "scenes/tree_map.h"

/// The store: Documents/Presets, one folder per centre, one scene file per room, loaded into memory as a
/// whole. Everything here belongs to the user-interface thread. Paths are relative to Documents; a platform
/// that knows no Documents folder is a fatal stop.

extern scenes::SceneTree Gruposss;               ///< the store as last loaded and changed since
extern std::vector<std::string> ListaGrupos;     ///< names of the centres, as shown
extern std::vector<std::string> ListaSubgrupos;  ///< names of the selected centre's rooms, as shown
extern std::vector<std::string> ListaEscenas;    ///< names of the selected room's scenes, in the file's order

/// Loads the tree, making the store's folder when there is none, and clears away temporary files that a
/// killed program left in the store. The placeholder centre is always in the tree. What cannot be listed
/// prints "No folder" and counts as empty; what cannot be decoded counts as a room without scenes. A room's
/// name ends at the first "." of its file's name. Of several files of one room all are read, and the scenes
/// of the one that the next save replaces are taken. An entry of a centre's folder with a name of dots only
/// is a fatal stop, as is a file at which FileToPreset() stops.
[[nodiscard]] scenes::SceneTree obtenerPresets();

/// Makes a folder, with those above it, and prints its URL; blocks until it is on disk. On failure, or when
/// guardedPath() refuses it, also "Unable to create directory" and the reason. Prints nothing when it is
/// there and can be listed.
void crearDirectorioSiNoExiste(const std::string &newPath);

/// Removes a file or folder with all that it contains; a symbolic link is removed, not followed. Never
/// removes the store's folder itself or what guardedPath() refuses. Prints the URL; a failure, a missing item
/// included, prints "Unable to create directory" (as creating does; wanted) and the reason. Blocks until it
/// is gone from the disk.
void eliminarDirectorio(const std::string &newPath);
