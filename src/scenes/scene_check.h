#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "scenes/scene_reading.h"

/// Reads the whole store as loading does, but reports what would stop a program that loads it.
namespace scenes {

/// One file of the store.
struct CheckedFile {
    std::string centre;
    std::string room;
    std::string path;  ///< absolute
    SceneFile::Outcome outcome = SceneFile::Outcome::fatal;
    int systemError = 0;     ///< with Outcome::inaccessible
    std::size_t scenes = 0;  ///< how many it holds
    bool isHidden = false;   ///< another file's scenes are shown as those of this room
};

/// The store as it is on disk.
struct StoreCheck {
    bool hasDocuments = false;          ///< the platform knows a Documents folder
    bool hasStore = false;              ///< there is something under the store's name
    std::string store;                  ///< absolute path of the store's folder
    std::vector<std::string> centres;   ///< as found; rooms without a centre belong to kNoCentre
    std::vector<CheckedFile> files;     ///< in the order in which they would be loaded
    std::vector<std::string> unlisted;  ///< absolute paths of folders that cannot be listed
    std::vector<std::string> nameless;  ///< absolute paths of entries whose names stop the program
};

/// Reads every file that loading reads. Changes nothing and makes no folder; prints nothing.
[[nodiscard]] StoreCheck checkStore();

}  // namespace scenes
