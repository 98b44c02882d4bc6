#include "scenes/scene_tree.h"

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/fatal.h"
#include "platform/services.h"
#include "scenes/print_line.h"
#include "scenes/scene_file.h"

SceneTree Gruposss;
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

/// `entry` is the room's file in `folder` (relative to Documents), `room` the first piece of its name.
void loadRoom(RoomMap &rooms, const std::string &centre, const std::string &room, const std::string &folder,
              const std::string &entry) {
    const std::string path = folder + "/" + entry;
    // "Aula 1.2.presets" must not take the place of "Aula 1.presets": the next save would overwrite the
    // latter.
    if (rooms.contains(room) && path != scenes::roomPath(centre, room)) return;
    // Erased first so that the key is spelled like the file whose scenes it holds.
    rooms.erase(room);
    rooms.emplace(room, FileToPreset(path));
}

/// Adds the rooms of the directory `entry` of the store to those of `centre`.
void loadCentre(const std::string &documents, const std::string &entry, const std::string &centre,
                RoomMap &rooms) {
    const std::string folder = scenes::centrePath(entry);
    const auto entries = entriesOf(documents + "/" + folder);
    if (!entries) return printLine("No folder");
    for (const std::string &file : *entries) {
        if (file == ".DS_Store") continue;
        const auto parts = pieces(file);
        if (parts.empty()) platform::fatalStop();
        if (parts.back() == "presets") loadRoom(rooms, centre, parts.front(), folder, file);
    }
}

/// `file://` and the percent-encoded path, a trailing "/" when it is a directory.
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

SceneTree obtenerPresets() {
    crearDirectorioSiNoExiste(PresetsFolder);
    const std::string documents = documentsOrStop();
    SceneTree tree;
    tree[scenes::kNoCentre];

    const auto entries = entriesOf(documents + "/" + PresetsFolder);
    if (!entries) {
        printLine("No folder");
        return tree;
    }
    for (const std::string &entry : *entries) {
        if (entry == ".DS_Store") continue;
        const auto parts = pieces(entry);
        if (entry.find('.') == std::string::npos) {
            // Two folders may spell one name in two ways (an accent composed or not): the room that both have
            // is then the one in the folder that the centre is called after, where its next save goes.
            const auto [centre, isNew] = tree.try_emplace(entry);
            loadCentre(documents, entry, centre->first, centre->second);
        } else if (parts.size() > 1 && parts.back() == "presets") {
            loadRoom(tree[scenes::kNoCentre], scenes::kNoCentre, parts.front(), PresetsFolder, entry);
        }
    }
    return tree;
}

void crearDirectorioSiNoExiste(const std::string &newPath) {
    const std::string documents = documentsOrStop();
    const std::string path = documents + "/" + newPath;
    const scenes::GuardedPath guarded = scenes::guardedPath(documents, newPath);
    if (guarded.refusal.empty() && canBeListed(guarded.path.string())) return;

    printLine(urlOf(path));
    if (!guarded.refusal.empty()) return printFailure(guarded.refusal);
    std::error_code failure;
    fs::create_directories(guarded.path, failure);
    if (failure) printFailure(path + ": " + failure.message());
}

void eliminarDirectorio(const std::string &newPath) {
    const std::string documents = documentsOrStop();
    const std::string path = documents + "/" + newPath;
    const scenes::GuardedPath guarded = scenes::guardedPath(documents, newPath);
    printLine(urlOf(path));
    if (!guarded.refusal.empty()) return printFailure(guarded.refusal);
    if (guarded.isStore) return printFailure(path + " is the folder of scenes itself");

    std::error_code failure;
    const std::uintmax_t removed = fs::remove_all(guarded.path, failure);
    if (failure) return printFailure(path + ": " + failure.message());
    // A missing item is no error to the library, but it is one to whoever asked for its removal.
    if (removed == 0)
        printFailure(path + ": " + std::make_error_code(std::errc::no_such_file_or_directory).message());
}
