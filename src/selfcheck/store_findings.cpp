// Whether the saved scenes can be read, room by room.

#include <algorithm>
#include <cerrno>
#include <set>

#include "scenes/name_order.h"
#include "scenes/store_paths.h"
#include "scenes/utf8.h"
#include "selfcheck/findings.h"

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

std::string inaccessibleReason(int systemError) {
    switch (systemError) {
        case EACCES:
        case EPERM:
            return "este usuario no tiene permiso para leer el fichero";
        case ENOENT:
        case ELOOP:
            return "es un enlace que no lleva a ningún fichero";
        default:
            return "el disco no deja leer el fichero (error " + std::to_string(systemError) + " del sistema)";
    }
}

Line unreadable(const CheckedFile &file, const std::string &reason) {
    return {State::Warning, repairUtf8(file.room) + ": " + reason,
            repairUtf8(file.path) +
                " — El programa muestra esta aula sin escenas. No guarde nada en ella antes de "
                "recuperar una copia."};
}

Line fileLine(const CheckedFile &file) {
    const std::string room = repairUtf8(file.room);
    // Before all else: it ends the program even where another file's scenes are shown.
    if (file.outcome == Outcome::Fatal)
        return {State::Fault, room + ": fichero dañado o de otro programa; cierra el programa al arrancar",
                "Mueva este fichero a otra carpeta: " + repairUtf8(file.path)};
    if (file.isHidden)
        return {
            State::Warning, room + ": otro fichero lleva el nombre de la misma aula, y este no se muestra",
            repairUtf8(file.path) + " — " +
                (file.outcome == Outcome::Read ? "Contiene " + counted(file.scenes, "escena", "escenas") + "."
                                               : "No se puede leer.")};
    switch (file.outcome) {
        case Outcome::Inaccessible:
            return unreadable(file, inaccessibleReason(file.systemError));
        case Outcome::NotAFile:
            return unreadable(file, "no es un fichero, sino una carpeta u otra cosa");
        case Outcome::TooLarge:
            return unreadable(file, "el fichero es demasiado grande para contener escenas");
        case Outcome::Empty:
            return unreadable(file, "el fichero está vacío");
        case Outcome::NoScenes:
            return unreadable(file, "el fichero no contiene escenas que se puedan leer");
        default:
            break;
    }
    if (file.scenes == 0) return {State::Information, room + ": sin escenas", {}};
    return {State::Good, room + ": " + counted(file.scenes, "escena", "escenas"), {}};
}

Line summary(const scenes::StoreCheck &store) {
    std::size_t sceneCount = 0;
    for (const CheckedFile &file : store.files) sceneCount += file.isHidden ? 0 : file.scenes;
    const std::set<std::string, scenes::NameLess> centres(store.centres.begin(), store.centres.end());
    return {State::Information,
            counted(sceneCount, "escena", "escenas") + " en " +
                counted(store.files.size(), "fichero", "ficheros") + ", " +
                counted(centres.size(), "centro", "centros"),
            "Carpeta " + repairUtf8(store.store)};
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
    bool isEmpty = true;
    for (const CheckedFile &file : store.files) {
        if (!scenes::sameName(file.centre, centre)) continue;
        Line line = fileLine(file);
        line.text = centreName(centre) + " / " + line.text;
        section.lines.push_back(std::move(line));
        isEmpty = false;
    }
    if (isEmpty) section.lines.push_back({State::Information, centreName(centre) + ": sin aulas", {}});
}

}  // namespace

Section storeFindings(const scenes::StoreCheck &store) {
    Section section{"Escenas guardadas", {}};
    if (!store.hasDocuments) {
        section.lines.push_back({State::Fault, "Este usuario no tiene carpeta de documentos",
                                 "El programa no puede arrancar sin ella."});
        return section;
    }
    if (!store.hasStore) {
        section.lines.push_back({State::Information, "Todavía no hay escenas guardadas",
                                 "El programa creará la carpeta al arrancar: " + repairUtf8(store.store)});
        return section;
    }
    section.lines.push_back(summary(store));
    for (const std::string &folder : store.unlisted)
        section.lines.push_back({State::Warning, "No se puede ver lo que hay en una carpeta de escenas",
                                 repairUtf8(folder) + " — El programa la toma por vacía."});
    for (const std::string &entry : store.nameless)
        section.lines.push_back({State::Fault,
                                 "Un fichero cuyo nombre son solo puntos cierra el programa al arrancar",
                                 "Bórrelo o cámbiele el nombre: " + repairUtf8(entry)});
    for (const std::string &centre : centresInOrder(store)) addCentre(section, store, centre);
    return section;
}

}  // namespace selfcheck
