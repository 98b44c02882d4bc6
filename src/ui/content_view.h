#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "ui/element_list.h"
#include "ui/observable.h"

/// The main window's state, and the cascade that rebuilds the three lists and sends the camera to the
/// selected scene. No widget is known here: what draws the state subscribes to its fields. The names that the
/// pickers show are the globals of scenes/scene_tree.h.
///
/// Every refresh runs downwards: centres, rooms, scenes, camera. It selects the first entry of each level
/// that it rebuilds and ends with at most one pan/tilt set and one zoom set. It never keeps a selection by
/// name. An index outside its list, or a name missing from the tree, is a fatal stop.
class ContentView {
 public:
    /// A level of the tree for a view that shows it on its own. ContentView keeps its selection in its fields
    /// and creates none of these.
    class L_Grupos : public ui::ElementList {};
    class L_Subgrupos : public ui::ElementList {};

    /// Loads the scene tree from disk and refreshes everything: the camera goes to the first scene.
    ContentView();
    ContentView(const ContentView &) = delete;
    ContentView &operator=(const ContentView &) = delete;

    ui::Observable<bool> showDetails{false};
    ui::Observable<double> SliderPanValue{0};
    ui::Observable<double> SliderTiltValue{0};
    ui::Observable<double> SliderZoomValue{0};
    /// Indices into ListaGrupos, ListaSubgrupos and ListaEscenas. -1 in the last two: nothing selected.
    ui::Observable<std::int64_t> selectedGrupo{0};
    ui::Observable<std::int64_t> selectedSubgrupo{0};
    ui::Observable<std::int64_t> selectedEscena{0};
    ui::Observable<bool> isShowingAlert{false};
    ui::Observable<std::string> alertInput{""};
    ui::Observable<bool> ListaSubgrupoDisabled{true};
    ui::Observable<bool> ListaEscenasDisabled{true};
    ui::Observable<bool> buttonRemoveSubgrupoDisabled{true};
    ui::Observable<bool> buttonAddEscenaDisabled{true};
    ui::Observable<bool> buttonRemoveEscenaDisabled{true};

    /// Rebuilds the centre list and everything below it.
    void actualizarGrupos();
    /// Rebuilds the room list of the selected centre and everything below it. A centre without rooms leaves
    /// the camera where it is.
    void actualizarSubgrupos();
    /// Rebuilds the scene list of the selected room and applies its first scene. A room without scenes leaves
    /// the camera where it is.
    void actualizarEscenas();
    /// Sends the camera to the selected scene.
    void PickerEscenaChanged();

    /// Changes the zoom by `avance` raw units (see ptz/camera_motion.h).
    void ZoomMove(std::int64_t avance);
    /// The menu's zoom moves: 10 raw units, finer than the window's buttons.
    void Mover_ZoomIn();
    void Mover_ZoomOut();

    /// Calls `observer` after every write to any field.
    void observeAllFields(const std::function<void()> &observer);

 private:
    void clearRoomsAndBelow();
};
