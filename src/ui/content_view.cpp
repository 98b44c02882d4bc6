#include "ui/content_view.h"

#include <cstdio>
#include <limits>

#include "platform/fatal.h"
#include "ptz/camera_error_dialog.h"
#include "ptz/camera_motion.h"
#include "ptz/ptz_functions.h"
#include "scenes/name_order.h"
#include "scenes/scene_tree.h"

using platform::elementAt;
using platform::valueFor;

namespace {

constexpr std::int64_t kNothingSelected = -1;

/// Written before 0, so that 0 is a change to every observer.
constexpr std::int64_t kNoCentreSelected = 500;

bool isIndexOf(const std::vector<std::string> &list, std::int64_t index) {
    return index != kNothingSelected && index < static_cast<std::int64_t>(list.size());
}

bool hasNoRooms(const std::string &centre) {
    const auto found = Gruposss.find(centre);
    return found != Gruposss.end() && found->second.empty();
}

/// The scene at `index` of a room; an origin scene when the centre or the room is not in the tree.
ManualPreset selectedScene(std::int64_t centre, std::int64_t room, std::int64_t index) {
    const auto rooms = Gruposss.find(elementAt(ListaGrupos, centre));
    if (rooms == Gruposss.end()) return {};
    const auto scenes = rooms->second.find(elementAt(ListaSubgrupos, room));
    if (scenes == rooms->second.end()) return {};
    return elementAt(scenes->second, index);
}

std::int32_t toCameraZoom(std::int64_t zoom) {
    if (zoom < std::numeric_limits<std::int32_t>::min() || zoom > std::numeric_limits<std::int32_t>::max())
        platform::fatalStop();
    return static_cast<std::int32_t>(zoom);
}

}  // namespace

ContentView::ContentView() {
    Gruposss = obtenerPresets();
    actualizarGrupos();
}

void ContentView::actualizarGrupos() {
    std::puts("Actualizando grupos");
    ListaGrupos.clear();
    for (const auto &[centre, rooms] : Gruposss) ListaGrupos.push_back(centre);
    scenes::sortCentreNames(ListaGrupos);

    buttonRemoveSubgrupoDisabled = true;
    buttonAddEscenaDisabled = true;
    buttonRemoveEscenaDisabled = true;

    // Two writes on purpose: observers must see a change even when the selection was 0 already.
    selectedGrupo = kNoCentreSelected;
    selectedGrupo = 0;
    actualizarSubgrupos();
}

void ContentView::actualizarSubgrupos() {
    std::puts("Actualizando subgrupos");
    ListaSubgrupos.clear();

    const std::int64_t centre = selectedGrupo;
    if (!isIndexOf(ListaGrupos, centre) || hasNoRooms(elementAt(ListaGrupos, centre))) {
        clearRoomsAndBelow();
        return;
    }

    ListaSubgrupoDisabled = false;
    buttonRemoveSubgrupoDisabled = false;
    buttonAddEscenaDisabled = false;

    for (const auto &[room, scenes] : valueFor(Gruposss, elementAt(ListaGrupos, centre))) {
        std::puts(room.c_str());
        ListaSubgrupos.push_back(room);
    }
    scenes::sortRoomNames(ListaSubgrupos);

    // Two writes on purpose, as for the centres.
    selectedSubgrupo = kNothingSelected;
    selectedSubgrupo = 0;
    actualizarEscenas();
}

/// The selections of room and scene keep their values, and the camera stays where it is.
void ContentView::clearRoomsAndBelow() {
    ListaSubgrupoDisabled = true;
    ListaEscenasDisabled = true;
    buttonRemoveSubgrupoDisabled = true;
    buttonAddEscenaDisabled = true;
    buttonRemoveEscenaDisabled = true;
    ListaEscenas.clear();
}

void ContentView::actualizarEscenas() {
    ListaEscenas.clear();

    const std::int64_t room = selectedSubgrupo;
    const bool roomSelected = isIndexOf(ListaSubgrupos, room);
    const auto *scenes = roomSelected ? &valueFor(valueFor(Gruposss, elementAt(ListaGrupos, selectedGrupo)),
                                                  elementAt(ListaSubgrupos, room))
                                      : nullptr;
    if (!scenes || scenes->empty()) {
        ListaEscenasDisabled = true;
        buttonRemoveEscenaDisabled = true;
        return;
    }

    ListaEscenasDisabled = false;
    buttonRemoveEscenaDisabled = false;
    for (const ManualPreset &scene : *scenes) ListaEscenas.push_back(scene.Name);

    // Two writes on purpose, as for the centres.
    selectedEscena = kNothingSelected;
    selectedEscena = 0;
    PickerEscenaChanged();
}

void ContentView::PickerEscenaChanged() {
    const ManualPreset scene = selectedScene(selectedGrupo, selectedSubgrupo, selectedEscena);

    ZEL_SetPanTiltPosition(scene.Pan, scene.Tilt);
    SliderPanValue = static_cast<double>(scene.Pan);
    SliderTiltValue = static_cast<double>(scene.Tilt);

    // The zoom of a scene is raw and goes to the camera as it stands.
    if (!DemoMode && !setZoomPosition(toCameraZoom(scene.Zoom))) CameraErrorDialog();
    SliderZoomValue = static_cast<double>(scene.Zoom);
}

void ContentView::ZoomMove(std::int64_t avance) {
    ::ZoomMove(avance);
}

void ContentView::Mover_ZoomIn() {
    ZoomMove(10);
}

void ContentView::Mover_ZoomOut() {
    ZoomMove(-10);
}

void ContentView::observeAllFields(const std::function<void()> &observer) {
    const auto watch = [&observer](auto &...fields) {
        (fields.observe([observer](const auto &) { observer(); }), ...);
    };
    watch(showDetails, SliderPanValue, SliderTiltValue, SliderZoomValue, selectedGrupo, selectedSubgrupo,
          selectedEscena, isShowingAlert, alertInput, ListaSubgrupoDisabled, ListaEscenasDisabled,
          buttonRemoveSubgrupoDisabled, buttonAddEscenaDisabled, buttonRemoveEscenaDisabled);
}
