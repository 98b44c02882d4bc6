#include "scenes/scene_tree.h"

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/fatal.h"
#include "platform/services.h"
#include "scenes/file_replacement.h"
#include "scenes/print_line.h"
#include "scenes/scene_file.h"
#include "scenes/store_paths.h"
#include "scenes/store_walk.h"

scenes::SceneTree Gruposss;
std::vector<std::string> ListaGrupos;
std::vector<std::string> ListaSubgrupos;
std::vector<std::string> ListaEscenas;

namespace {

namespace fs = std::filesystem;
using scenes::printLine;

std::string documentsOrStop() {
    auto documents = platform::services().folders->documents();
    if (!documents) platform::fatalStop();
    return *std::move(documents);
}

/// Reads what the walk comes across into a tree.
class TreeLoader : public scenes::StoreVisitor {
 public:
    explicit TreeLoader(scenes::SceneTree &tree) : tree_(tree) {}

    void foundCentre(const std::string &centre) override {
        // Both keys are spelled like the folder or file that was found last: that is where the next save
        // goes.
        const auto known = tree_.find(centre);
        if (known == tree_.end()) {
            tree_[centre];
        } else {
            auto node = tree_.extract(known);
            node.key() = centre;
            tree_.insert(std::move(node));
        }
    }

    void foundRoom(const std::string &centre, const std::string &room, const std::string &path) override {
        scenes::RoomMap &rooms = tree_[centre];
        rooms.erase(room);
        rooms.emplace(room, FileToPreset(path));
    }

    void cannotList(const std::string & /*folder*/) override { printLine("No folder"); }
    void foundNameless(const std::string & /*path*/) override { platform::fatalStop(); }

 private:
    scenes::SceneTree &tree_;
};

/// `file://` and the percent-encoded path, a trailing "/" when it is a folder.
std::string urlOf(const std::string &path) {
    const QString text = QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
    QByteArray url = QUrl::fromLocalFile(text).toEncoded();
    url.replace("[", "%5B").replace("]", "%5D");
    std::error_code ignored;
    if (!url.endsWith('/') && fs::is_directory(path, ignored)) url += '/';
    return url.toStdString();
}

void printFailure(const std::string &reason) {
    printLine("Unable to create directory " + reason);
}

bool canBeListed(const std::string &path) {
    std::error_code failure;
    const fs::directory_iterator listing(path, failure);
    return !failure;
}

}  // namespace

scenes::SceneTree obtenerPresets() {
    crearDirectorioSiNoExiste(PresetsFolder);
    const std::string documents = documentsOrStop();
    scenes::SceneTree tree;
    tree[scenes::kNoCentre];

    scenes::removeAbandonedFiles(documents + "/" + PresetsFolder);
    TreeLoader loader(tree);
    scenes::walkStore(documents, loader);
    return tree;
}

void crearDirectorioSiNoExiste(const std::string &newPath) {
    const std::string documents = documentsOrStop();
    const std::string path = documents + "/" + newPath;
    const scenes::GuardedPath guarded = scenes::guardedPath(documents, newPath);
    if (guarded.refusal.empty() && canBeListed(path)) return;

    printLine(urlOf(path));
    if (!guarded.refusal.empty()) return printFailure(guarded.refusal);
    std::error_code failure;
    fs::create_directories(path, failure);
    if (failure) return printFailure(path + ": " + failure.message());
    // The folders above may be new as well.
    scenes::flushFolder(fs::path(documents).parent_path());
    scenes::flushFolder(documents);
    scenes::flushFolder(guarded.path.parent_path());
}

void eliminarDirectorio(const std::string &newPath) {
    const std::string documents = documentsOrStop();
    const std::string path = documents + "/" + newPath;
    const scenes::GuardedPath guarded = scenes::guardedPath(documents, newPath);
    printLine(urlOf(path));
    if (!guarded.refusal.empty()) return printFailure(guarded.refusal);
    if (guarded.isStore) return printFailure(path + " is the folder of scenes itself");

    std::error_code failure;
    const std::uintmax_t removed = fs::remove_all(path, failure);
    if (failure) return printFailure(path + ": " + failure.message());
    // A missing item is no error to the library, but it is one to whoever asked for its removal.
    if (removed == 0)
        return printFailure(path + ": " +
                            std::make_error_code(std::errc::no_such_file_or_directory).message());
    scenes::flushFolder(guarded.path.parent_path());
}
