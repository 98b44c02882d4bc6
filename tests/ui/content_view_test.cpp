#include "ui/content_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>

#include "support/bench_test.h"

namespace {

using support::scene;
using testing::ElementsAre;
using testing::KilledBySignal;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

std::vector<bool> flags(const ContentView &view) {
    return {view.ListaSubgrupoDisabled, view.buttonRemoveSubgrupoDisabled, view.buttonAddEscenaDisabled,
            view.ListaEscenasDisabled, view.buttonRemoveEscenaDisabled};
}

using ContentViewTest = support::BenchTest;

TEST_F(ContentViewTest, CascadeTellsItsStepsAndEndsWithOneMove) {
    storeRoom(" Sin grupo", "b", {scene("Uno", 10, 0, 50)});
    storeRoom(" Sin grupo", "A", {scene("Dos", -8, -5, 70), scene("Tres", 0, 0, 0)});
    storeRoom(" Sin grupo", "c", {});
    CaptureStdout();
    ContentView view;
    EXPECT_EQ(GetCapturedStdout(), "Actualizando grupos\nActualizando subgrupos\nA\nb\nc\n");

    EXPECT_THAT(ListaSubgrupos, ElementsAre("A", "b", "c"));
    EXPECT_THAT(ListaEscenas, ElementsAre("Dos", "Tres"));
    EXPECT_THAT(flags(view), ElementsAre(false, false, false, false, false));
    EXPECT_EQ(bench_.panTiltSets(), 1);
    EXPECT_EQ(bench_.zoomSets(), 1);
    EXPECT_EQ(bench_.camera->target().pan, -28800);
    EXPECT_EQ(bench_.camera->target().zoom, 70);
    EXPECT_EQ(view.SliderPanValue, -8.0);
    EXPECT_EQ(view.SliderTiltValue, -5.0);
    EXPECT_EQ(view.SliderZoomValue, 70.0);
}

TEST_F(ContentViewTest, NothingToShowEmptiesTheListsAndLeavesTheCameraAlone) {
    storeSample();
    ContentView view;
    EXPECT_THAT(ListaGrupos, ElementsAre(" Sin grupo", "Norte", "Sur"));
    EXPECT_THAT(flags(view), ElementsAre(true, true, true, true, true));
    EXPECT_TRUE(bench_.camera->transfers().empty());

    view.selectedGrupo = 1;
    view.actualizarSubgrupos();
    view.selectedSubgrupo = 2;
    bench_.camera->forgetTransfers();
    view.actualizarEscenas();
    EXPECT_THAT(flags(view), ElementsAre(false, false, false, true, true));
    for (const std::int64_t nothing : {2, 3, -1}) {
        view.selectedGrupo = nothing;
        view.actualizarSubgrupos();
        EXPECT_THAT(flags(view), ElementsAre(true, true, true, true, true)) << nothing;
        EXPECT_TRUE(ListaSubgrupos.empty() && ListaEscenas.empty()) << nothing;
        EXPECT_EQ(view.selectedSubgrupo, 2) << nothing;
    }
    EXPECT_TRUE(bench_.camera->transfers().empty());
}

TEST_F(ContentViewTest, EveryRefreshWritesItsSelectionTwiceSoThatWatchersSeeAChange) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 1, 1)});
    ContentView view;
    std::vector<std::pair<char, std::int64_t>> writes;
    for (auto [level, field] : {std::pair{'g', &view.selectedGrupo}, std::pair{'s', &view.selectedSubgrupo},
                                std::pair{'e', &view.selectedEscena}})
        field->observe([&writes, level = level](std::int64_t value) { writes.emplace_back(level, value); });
    int redraws = 0;
    view.observeAllFields([&] { ++redraws; });

    view.actualizarGrupos();
    EXPECT_THAT(writes, ElementsAre(std::pair('g', 500), std::pair('g', 0), std::pair('s', -1),
                                    std::pair('s', 0), std::pair('e', -1), std::pair('e', 0)));
    EXPECT_EQ(redraws, 17);  // those six, eight flags and the three sliders
}

TEST_F(ContentViewTest, WithoutASceneTheCameraGoesToTheOriginAndWithoutACameraTheFieldsFollow) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 2, 3)});
    ContentView view;
    Gruposss[" Sin grupo"].erase("Sala");
    view.PickerEscenaChanged();
    EXPECT_EQ(bench_.camera->target().pan, 0);
    EXPECT_EQ(view.SliderPanValue, 0.0);

    bench_.camera->forgetTransfers();
    DemoMode = true;
    Gruposss = obtenerPresets();
    view.PickerEscenaChanged();
    EXPECT_EQ(view.SliderZoomValue, 3.0);
    EXPECT_TRUE(bench_.camera->transfers().empty());
}

TEST_F(ContentViewTest, ImpossibleSelectionsAndZoomsPastTheirLimitsAreFatal) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 2, 3)});
    const auto after = [](const std::function<void(ContentView &)> &prepare, void (ContentView::*act)()) {
        ContentView view;
        prepare(view);
        (view.*act)();
    };
    const std::pair<std::function<void(ContentView &)>, void (ContentView::*)()> rows[] = {
        {[](ContentView &v) { v.selectedEscena = 1; }, &ContentView::PickerEscenaChanged},
        {[](ContentView &v) { v.selectedSubgrupo = 1; }, &ContentView::PickerEscenaChanged},
        {[](ContentView &v) { v.selectedGrupo = 1; }, &ContentView::PickerEscenaChanged},
        {[](ContentView &v) { v.selectedGrupo = 1; }, &ContentView::actualizarEscenas},
        {[](ContentView &) { Gruposss.clear(); }, &ContentView::actualizarSubgrupos},
        {[](ContentView &) { Gruposss[" Sin grupo"]["Sala"][0].Zoom = 2147483648; },
         &ContentView::PickerEscenaChanged},
        {[](ContentView &) { Gruposss[" Sin grupo"]["Sala"][0].Zoom = -2147483649; },
         &ContentView::PickerEscenaChanged}};
    for (const auto &[prepare, act] : rows) EXPECT_EXIT(after(prepare, act), KilledBySignal(SIGABRT), "");
    for (const std::int64_t limit : {INT64_C(-2147483648), INT64_C(2147483647)})
        after([&](ContentView &) { Gruposss[" Sin grupo"]["Sala"][0].Zoom = limit; },
              &ContentView::PickerEscenaChanged);
}

TEST_F(ContentViewTest, ACameraThatRefusesTheZoomEndsTheProgramWithTheDialog) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 2, 3)});
    bench_.camera->refuse({support::kTerminal, support::kZoomAbs, support::kSetCur});
    EXPECT_EXIT(ContentView(), testing::ExitedWithCode(0), "unable to write new value to control zoom-abs");
}

TEST(ElementLists, CountTheirNamesAndHaveAnIdEach) {
    ContentView::L_Grupos centres;
    centres.actualizaLista({"Norte", "Sur"});
    EXPECT_EQ(centres.elementosCount(), 2);
    EXPECT_NE(centres.id.get(), ContentView::L_Subgrupos().id.get());
}

}  // namespace
