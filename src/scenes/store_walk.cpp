#include "scenes/store_walk.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "scenes/store_paths.h"

namespace scenes {
namespace {

namespace fs = std::filesystem;

/// Names of all entries, hidden ones too, in an order that does not change from one start to the next.
/// Nothing when `folder` cannot be listed.
std::optional<std::vector<std::string>> entriesOf(const fs::path &folder) {
    std::error_code failure;
    fs::directory_iterator entry(folder, failure);
    std::vector<std::string> names;
    while (!failure && entry != fs::directory_iterator()) {
        names.push_back(entry->path().filename().string());
        entry.increment(failure);
    }
    if (failure) return std::nullopt;
    std::sort(names.begin(), names.end());
    return names;
}

/// The pieces between the dots, empty ones dropped.
std::vector<std::string> pieces(std::string_view name) {
    std::vector<std::string> result;
    while (!name.empty()) {
        const std::size_t end = std::min(name.find('.'), name.size());
        if (end > 0) result.emplace_back(name.substr(0, end));
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return result;
}

struct RoomFile {
    std::string room;
    std::string path;
};

class Walk {
 public:
    Walk(const std::string &documents, StoreVisitor &visitor) : documents_(documents), visitor_(visitor) {}

    void store() {
        auto entries = entriesOf(documents_ + "/" + PresetsFolder);
        if (!entries) return visitor_.cannotList(PresetsFolder);
        // Before the files at the root: a folder may be called like the placeholder, but a save of its rooms
        // goes to the root.
        for (const std::string &entry : *entries) {
            if (entry.find('.') == std::string::npos) centre(entry);
        }
        std::erase_if(*entries, [](const std::string &entry) { return pieces(entry).size() < 2; });
        rooms(kNoCentre, PresetsFolder, *entries);
    }

 private:
    void centre(const std::string &name) {
        visitor_.foundCentre(name);
        const std::string folder = centrePath(name);
        const auto entries = entriesOf(documents_ + "/" + folder);
        if (!entries) return visitor_.cannotList(folder);
        rooms(name, folder, *entries);
    }

    void rooms(const std::string &centre, const std::string &folder,
               const std::vector<std::string> &entries) {
        const std::string inFolder = folder + "/";
        std::vector<RoomFile> files;
        for (const std::string &entry : entries) {
            if (entry == ".DS_Store") continue;
            const std::string path = inFolder + entry;
            const auto parts = pieces(entry);
            if (parts.empty()) {
                visitor_.foundNameless(path);
            } else if (parts.back() == "presets") {
                files.push_back({parts.front(), path});
            }
        }
        // "Aula 1.2.presets" is the room "Aula 1", too, but a save of it replaces "Aula 1.presets".
        std::stable_partition(files.begin(), files.end(),
                              [&](const RoomFile &file) { return file.path != roomPath(centre, file.room); });
        for (const RoomFile &file : files) visitor_.foundRoom(centre, file.room, file.path);
    }

    const std::string &documents_;
    StoreVisitor &visitor_;
};

}  // namespace

void walkStore(const std::string &documents, StoreVisitor &visitor) {
    Walk(documents, visitor).store();
}

}  // namespace scenes
