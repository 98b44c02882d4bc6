#include "ui/scene_actions.h"

#include <cstdio>
#include <string>

#include "platform/fatal.h"
#include "ptz/camera_motion.h"
#include "scenes/scene_file.h"
#include "scenes/scene_tree.h"
#include "scenes/store_paths.h"
#include "ui/content_view.h"
#include "ui/modal_prompts.h"

namespace ui {

using platform::elementAt;
using platform::valueFor;

namespace {

std::string askName(const char *question) {
    std::string name = askStringDialog(question, "", "");
    std::puts(name.c_str());
    return name;
}

const std::string &selectedCentre(const ContentView &view) {
    return elementAt(ListaGrupos, view.selectedGrupo);
}

const std::string &selectedRoom(const ContentView &view) {
    return elementAt(ListaSubgrupos, view.selectedSubgrupo);
}

/// The selected room's scenes in the tree.
std::vector<ManualPreset> &selectedScenes(const ContentView &view) {
    return valueFor(valueFor(Gruposss, selectedCentre(view)), selectedRoom(view));
}

void writeSelectedRoom(const ContentView &view) {
    PresetToFile(scenes::roomPath(selectedCentre(view), selectedRoom(view)), selectedScenes(view));
}

}  // namespace

void addCentre(ContentView &view) {
    const std::string name = askName("Introduzca el nombre del centro");
    if (name.empty() || Gruposss.contains(name)) return;

    Gruposss[name];
    crearDirectorioSiNoExiste(scenes::centrePath(name));
    view.actualizarGrupos();
}

void deleteCentre(ContentView &view) {
    if (!askConfirmDialog("¿Seguro que desea eliminar el centro?", "")) return;

    const std::string centre = selectedCentre(view);
    if (scenes::sameName(centre, scenes::kNoCentre)) return;

    Gruposss.erase(centre);
    eliminarDirectorio(scenes::centrePath(centre));
    view.actualizarGrupos();
}

void addRoom(ContentView &view) {
    const std::string name = askName("Introduzca el nombre del aula o espacio");
    if (name.empty()) return;

    auto &rooms = valueFor(Gruposss, selectedCentre(view));
    if (rooms.contains(name)) return;

    rooms[name];
    PresetToFile(scenes::roomPath(selectedCentre(view), name), {});
    view.actualizarSubgrupos();
}

void deleteRoom(ContentView &view) {
    if (!askConfirmDialog("¿Seguro que desea eliminar el aula o espacio?", "")) return;

    const std::string &centre = selectedCentre(view);
    const std::string room = selectedRoom(view);
    valueFor(Gruposss, centre).erase(room);
    eliminarDirectorio(scenes::roomPath(centre, room));
    view.actualizarSubgrupos();
}

void saveScene(ContentView &view) {
    const std::string name = askName("Introduzca el nombre de la escena");
    if (name.empty()) return;

    const auto direction = ZEL_GetPanTiltPosition();
    const auto zoom = ZEL_GetZoomPosition();
    ManualPreset scene;
    scene.Name = name;
    scene.Tilt = valueFor(direction, "Tilt_Value");
    scene.Pan = valueFor(direction, "Pan_Value");
    scene.Zoom = valueFor(zoom, "Zoom_Value");

    selectedScenes(view).push_back(scene);
    writeSelectedRoom(view);
    view.actualizarEscenas();
}

void deleteScene(ContentView &view) {
    if (!askConfirmDialog("¿Seguro que desea eliminar la escena?", "")) return;

    auto &scenes = selectedScenes(view);
    const auto &removed = elementAt(scenes, view.selectedEscena);
    scenes.erase(scenes.begin() + (&removed - scenes.data()));
    writeSelectedRoom(view);
    view.actualizarEscenas();
}

}  // namespace ui
