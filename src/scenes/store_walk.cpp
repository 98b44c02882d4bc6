#include "scenes/store_walk.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <vector>

#include "scenes/name_order.h"
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

class Walk {
 public:
    Walk(const std::string &documents, StoreVisitor &visitor) : documents_(documents), visitor_(visitor) {}

    void store() {
        const auto entries = entriesOf(documents_ + "/" + PresetsFolder);
        if (!entries) return visitor_.cannotList(PresetsFolder);
        for (const std::string &entry : *entries) {
            if (entry == ".DS_Store") continue;
            const auto parts = pieces(entry);
            if (entry.find('.') == std::string::npos) {
                centre(entry);
            } else if (parts.size() > 1 && parts.back() == "presets") {
                room(kNoCentre, parts.front(), PresetsFolder + "/" + entry);
            }
        }
    }

 private:
    void centre(const std::string &name) {
        visitor_.foundCentre(name);
        // Two folders may spell one name in two ways (an accent composed or not): of a room that both have,
        // the one in the folder that the centre is called after is taken, where its next save goes.
        const std::string &calledAfter = rooms_.try_emplace(name).first->first;
        const std::string folder = centrePath(name);
        const auto entries = entriesOf(documents_ + "/" + folder);
        if (!entries) return visitor_.cannotList(folder);
        for (const std::string &entry : *entries) {
            if (entry == ".DS_Store") continue;
            const std::string path = folder + "/" + entry;
            const auto parts = pieces(entry);
            if (parts.empty()) {
                visitor_.foundNameless(path);
            } else if (parts.back() == "presets") {
                room(calledAfter, parts.front(), path);
            }
        }
    }

    void room(const std::string &centre, const std::string &room, const std::string &path) {
        // "Aula 1.2.presets" must not take the place of "Aula 1.presets": the next save would overwrite the
        // latter.
        const bool isNew = rooms_[centre].insert(room).second;
        if (!isNew && path != roomPath(centre, room)) return visitor_.foundDuplicate(centre, room, path);
        visitor_.foundRoom(centre, room, path);
    }

    const std::string &documents_;
    StoreVisitor &visitor_;
    std::map<std::string, std::set<std::string, NameLess>, NameLess> rooms_;
};

}  // namespace

void walkStore(const std::string &documents, StoreVisitor &visitor) {
    Walk(documents, visitor).store();
}

}  // namespace scenes
