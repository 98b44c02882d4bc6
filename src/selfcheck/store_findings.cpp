// Whether the saved scenes can be read, room by room.

#include <algorithm>
#include <cerrno>
#include <set>

#include "scenes/name_order.h"
#include "scenes/store_paths.h"
#include "scenes/utf8.h"
#include "selfcheck/findings.h"
#include "selfcheck/sentences.h"

namespace selfcheck {
namespace {

using scenes::CheckedFile;
using scenes::repairUtf8;
using Outcome = scenes::SceneFile::Outcome;

std::string counted(std::size_t count, const std::string &one, const std::string &many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string centreName(const std::string &centre) {
    return scenes::sameName(centre, scenes::kNoCentre) ? "Sin grupo" : repairUtf8(centre);
}

Sentence reasonInaccessible(int systemError) {
    switch (systemError) {
        case EACCES:
        case EPERM:
            return Sentence::fileDenied;
        case ENOENT:
        case ELOOP:
            return Sentence::fileIsDanglingLink;
        default:
            return Sentence::fileUnreadable;
    }
}

/// What is said of the file of the room that `place` names.
Line fileLine(const CheckedFile &file, const std::string &place) {
    const std::string path = repairUtf8(file.path);
    // Before all else: it ends the program even where another file's scenes are shown.
    if (file.outcome == Outcome::fatal) return say(Sentence::fileFatal, {place, path});
    const std::string sceneCount = counted(file.scenes, "escena", "escenas");
    if (file.isHidden)
        return file.outcome == Outcome::read ? say(Sentence::fileHidden, {place, path, sceneCount})
                                             : say(Sentence::fileHiddenUnreadable, {place, path});
    switch (file.outcome) {
        case Outcome::inaccessible: {
            const Sentence reason = reasonInaccessible(file.systemError);
            if (reason == Sentence::fileUnreadable)
                return say(reason, {place, std::to_string(file.systemError), path});
            return say(reason, {place, path});
        }
        case Outcome::notAFile:
            return say(Sentence::notAFile, {place, path});
        case Outcome::tooLarge:
            return say(Sentence::fileTooLarge, {place, path});
        case Outcome::empty:
            return say(Sentence::fileEmpty, {place, path});
        case Outcome::noScenes:
            return say(Sentence::fileWithoutScenes, {place, path});
        default:
            break;
    }
    return file.scenes == 0 ? say(Sentence::roomEmpty, {place}) : say(Sentence::room, {place, sceneCount});
}

Line summary(const scenes::StoreCheck &store) {
    std::size_t sceneCount = 0;
    for (const CheckedFile &file : store.files) sceneCount += file.isHidden ? 0 : file.scenes;
    const std::set<std::string, scenes::NameLess> centres(store.centres.begin(), store.centres.end());
    return say(Sentence::storeSummary,
               {counted(sceneCount, "escena", "escenas"), counted(store.files.size(), "fichero", "ficheros"),
                counted(centres.size(), "centro", "centros"), repairUtf8(store.store)});
}

/// The centres' names as the program's list shows them, those without a centre first.
std::vector<std::string> centresInOrder(const scenes::StoreCheck &store) {
    std::set<std::string, scenes::NameLess> names(store.centres.begin(), store.centres.end());
    for (const CheckedFile &file : store.files) names.insert(file.centre);
    std::vector<std::string> ordered(names.begin(), names.end());
    scenes::sortCentreNames(ordered);
    return ordered;
}

void addCentre(Section &section, const scenes::StoreCheck &store, const std::string &centre) {
    const std::string name = centreName(centre);
    const std::size_t before = section.lines.size();
    for (const CheckedFile &file : store.files)
        if (scenes::sameName(file.centre, centre))
            section.lines.push_back(fileLine(file, name + " / " + repairUtf8(file.room)));
    if (section.lines.size() == before) section.lines.push_back(say(Sentence::centreEmpty, {name}));
}

}  // namespace

Section storeFindings(const scenes::StoreCheck &store) {
    const std::string title = "Escenas guardadas";
    if (!store.hasDocuments) return {title, {say(Sentence::noDocuments)}};
    if (!store.hasStore) return {title, {say(Sentence::noStore, {repairUtf8(store.store)})}};
    Section section{title, {summary(store)}};
    for (const std::string &folder : store.unlisted)
        section.lines.push_back(say(Sentence::folderUnlisted, {repairUtf8(folder)}));
    for (const std::string &entry : store.nameless)
        section.lines.push_back(say(Sentence::nameOfDots, {repairUtf8(entry)}));
    for (const std::string &centre : centresInOrder(store)) addCentre(section, store, centre);
    return section;
}

}  // namespace selfcheck
