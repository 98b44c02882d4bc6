#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "scenes/scene_file.h"
#include "scenes/scene_tree.h"
#include "scenes/store_paths.h"
#include "support/files.h"
#include "support/temporary_documents.h"

namespace support {

/// A scene as the window saves it: the camera's position and no paths of devices.
inline ManualPreset scene(const std::string &name, std::int64_t pan = 0, std::int64_t tilt = 0,
                          std::int64_t zoom = 0) {
    return {name, "", "", "", tilt, pan, zoom};
}

/// A store of its own for each test of a fixture that derives from this; the folder is not there yet.
class Store {
 protected:
    ~Store() {
        Gruposss.clear();
        ListaGrupos.clear();
        ListaSubgrupos.clear();
        ListaEscenas.clear();
    }

    [[nodiscard]] std::filesystem::path store() const { return documents_.path() / PresetsFolder; }
    [[nodiscard]] bool onDisk(const std::string &path) const {
        return std::filesystem::exists(documents_.path() / path);
    }

    /// A file of the store, with whatever content. Its path.
    std::filesystem::path put(const std::string &path, std::string_view content) const {
        writeFile(store() / path, content);
        return store() / path;
    }

    void storeCentre(const std::string &centre) const {
        std::filesystem::create_directories(
            documents_.path() / (centre == scenes::kNoCentre ? PresetsFolder : scenes::centrePath(centre)));
    }
    void storeRoom(const std::string &centre, const std::string &room,
                   const std::vector<ManualPreset> &scenes) const {
        storeCentre(centre);
        PresetToFile(scenes::roomPath(centre, room), scenes);
    }
    /// The same by the file's path in the store, under whatever name.
    void putScenes(const std::string &path, const std::vector<ManualPreset> &scenes) const {
        put(path, "");
        PresetToFile(PresetsFolder + "/" + path, scenes);
    }

    TemporaryDocuments documents_;
};

}  // namespace support
