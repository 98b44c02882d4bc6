// How long a person waits for the lists, by the number of their entries: after a choice of a centre, of all
// that is below it, and when a picker opens.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <string>
#include <vector>

#include "comparison.h"
#include "scenes/scene_tree.h"
#include "support/simulated_camera.h"
#include "temporary_store.h"
#include "ui/content_view.h"
#include "ui/content_widget.h"
#include "ui/picker.h"

namespace {

std::string name(std::int64_t number) {
    return "Aula " + std::to_string(number) + " de la planta baja";
}

/// As many centres, rooms of the first centre and scenes of its first room.
scenes::SceneTree treeOf(std::int64_t centres, std::int64_t rooms, std::int64_t scenes) {
    scenes::SceneTree tree;
    for (std::int64_t i = 0; i < centres; ++i) tree[name(i)];
    for (std::int64_t i = 0; i < rooms; ++i) tree[name(0)][name(i)];
    tree[name(0)][name(0)] = bench::roomOf(scenes);
    return tree;
}

/// From the choice to the window that shows what is below it.
void cascade(benchmark::State &state, const char *picker, scenes::SceneTree tree) {
    const support::SimulatedCamera camera;
    bench::storeOf(0);
    ContentView view;
    Gruposss = std::move(tree);
    ui::ContentWidget window(view);
    window.show();
    for (auto _ : state) {
        state.PauseTiming();  // what was shown before had other entries
        ListaGrupos.clear();
        ListaSubgrupos.clear();
        ListaEscenas.clear();
        view.isShowingAlert = false;
        QApplication::processEvents();
        state.ResumeTiming();
        view.actualizarGrupos();
        QApplication::processEvents();
    }
    if (window.findChild<QComboBox *>(QLatin1String(picker))->count() != state.range(0))
        state.SkipWithError("not shown");
    Gruposss.clear();
}

void BM_CascadeCentres(benchmark::State &state) {
    cascade(state, "pickerCentro", treeOf(state.range(0), 1, 1));
}
void BM_CascadeRooms(benchmark::State &state) {
    cascade(state, "pickerAula", treeOf(1, state.range(0), 1));
}
void BM_CascadeScenes(benchmark::State &state) {
    cascade(state, "pickerEscena", treeOf(1, 1, state.range(0)));
}

void BM_OpenPicker(benchmark::State &state) {
    ui::Picker picker;
    picker.QWidget::show();
    std::vector<std::string> list;
    for (std::int64_t i = 0; i < state.range(0); ++i) list.push_back(name(i));
    picker.show(list, 0);
    for (auto _ : state) {
        picker.showPopup();
        QApplication::processEvents();
        picker.hidePopup();
    }
}

void ofLists(benchmark::internal::Benchmark *rounds) {
    rounds->Arg(10)->Arg(100)->Arg(1000)->Arg(10000)->MinTime(0.02)->Repetitions(7);
}
BENCHMARK(BM_CascadeCentres)->Apply(ofLists);
BENCHMARK(BM_CascadeRooms)->Apply(ofLists);
BENCHMARK(BM_CascadeScenes)->Apply(ofLists);
BENCHMARK(BM_OpenPicker)->Apply(ofLists);

}  // namespace
