#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/services.h"
#include "scenes/scene_file.h"
#include "scenes/scene_tree.h"
#include "scenes/store_paths.h"

namespace bench {

inline std::vector<ManualPreset> roomOf(std::int64_t scenes) {
    std::vector<ManualPreset> room;
    for (std::int64_t i = 0; i < scenes; ++i) {
        room.push_back(
            {"Pizarra y mesa del profesor " + std::to_string(i), "", "", "", 3600 * i, -3600 * i, 10 * i});
    }
    return room;
}

inline constexpr std::int64_t kScenesOfARoom = 10;

/// A user's folder with a store of so many scenes, in rooms of ten. It goes with the object.
class TemporaryStore : public platform::UserFolders {
 public:
    explicit TemporaryStore(std::int64_t scenes) {
        std::string name = (std::filesystem::temp_directory_path() / "store-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) std::abort();
        home_ = name;
        for (std::int64_t room = 0; room * kScenesOfARoom < scenes; ++room) {
            const std::string centre = "Centro " + std::to_string(room / kRoomsOfACentre);
            std::filesystem::create_directories(absolute(scenes::centrePath(centre)));
            rooms_.push_back(scenes::roomPath(centre, "Aula " + std::to_string(room)));
        }
    }
    ~TemporaryStore() override { std::filesystem::remove_all(home_); }
    TemporaryStore(const TemporaryStore &) = delete;
    TemporaryStore &operator=(const TemporaryStore &) = delete;

    [[nodiscard]] const std::filesystem::path &home() const { return home_; }
    [[nodiscard]] std::optional<std::string> documents() const override { return home_ / "Documents"; }
    [[nodiscard]] std::optional<std::string> downloads() const override { return home_ / "Downloads"; }

    /// Their files, beneath the Documents folder.
    [[nodiscard]] const std::vector<std::string> &rooms() const { return rooms_; }
    [[nodiscard]] std::filesystem::path absolute(const std::string &path) const {
        return home_ / "Documents" / path;
    }

    /// Saving waits for the disk: all but the first room are copies of it.
    void fill() const {
        for (const std::string &room : rooms_) {
            if (room == rooms_.front()) {
                PresetToFile(room, roomOf(kScenesOfARoom));
            } else {
                std::filesystem::copy_file(absolute(rooms_.front()), absolute(room));
            }
        }
    }

 private:
    static constexpr std::int64_t kRoomsOfACentre = 100;

    std::filesystem::path home_;
    std::vector<std::string> rooms_;
};

/// From now on the store of the process. Made once a run.
inline const TemporaryStore &storeOf(std::int64_t scenes) {
    static std::map<std::int64_t, std::shared_ptr<TemporaryStore>> stores;
    auto &store = stores[scenes];
    const bool isNew = store == nullptr;
    if (isNew) store = std::make_shared<TemporaryStore>(scenes);
    platform::Services services = platform::services();
    services.folders = store;
    platform::installServices(std::move(services));
    if (isNew) store->fill();
    return *store;
}

}  // namespace bench
