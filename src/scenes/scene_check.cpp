#include "scenes/scene_check.h"

#include <filesystem>
#include <map>
#include <system_error>

#include "platform/services.h"
#include "scenes/name_order.h"
#include "scenes/store_paths.h"
#include "scenes/store_walk.h"

namespace scenes {
namespace {

namespace fs = std::filesystem;

class Checker : public StoreVisitor {
 public:
    Checker(const std::string &documents, StoreCheck &check) : documents_(documents), check_(check) {}

    void foundCentre(const std::string &centre) override { check_.centres.push_back(centre); }

    void foundRoom(const std::string &centre, const std::string &room, const std::string &path) override {
        const auto [shown, isNew] = shown_[centre].try_emplace(room, check_.files.size());
        if (!isNew) check_.files[shown->second].isHidden = true;
        shown->second = check_.files.size();

        const SceneFile file = readSceneFile(absolute(path));
        check_.files.push_back({.centre = centre,
                                .room = room,
                                .path = absolute(path),
                                .outcome = file.outcome,
                                .systemError = file.systemError,
                                .scenes = file.presets.size()});
    }

    void cannotList(const std::string &folder) override { check_.unlisted.push_back(absolute(folder)); }
    void foundNameless(const std::string &path) override { check_.nameless.push_back(absolute(path)); }

 private:
    [[nodiscard]] std::string absolute(const std::string &path) const { return documents_ + "/" + path; }

    const std::string &documents_;
    StoreCheck &check_;
    /// By centre and room: the index of the file that stands for it.
    std::map<std::string, std::map<std::string, std::size_t, NameLess>, NameLess> shown_;
};

}  // namespace

StoreCheck checkStore() {
    StoreCheck check;
    const auto documents = platform::services().folders->documents();
    if (!documents) return check;
    check.hasDocuments = true;
    check.store = *documents + "/" + PresetsFolder;

    std::error_code failure;
    // A folder that may not even be looked at counts as there: that it cannot be listed says more.
    check.hasStore = fs::symlink_status(check.store, failure).type() != fs::file_type::not_found;
    if (!check.hasStore) return check;

    Checker checker(*documents, check);
    walkStore(*documents, checker);
    return check;
}

}  // namespace scenes
