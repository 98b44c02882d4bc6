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

class ContentViewTest : public support::BenchTest {
 protected:
    void choose(ContentView &view, const std::string &centre) {
        const auto at = std::find(ListaGrupos.begin(), ListaGrupos.end(), centre);
        ASSERT_NE(at, ListaGrupos.end());
        view.selectedGrupo = at - ListaGrupos.begin();
        view.actualizarSubgrupos();
    }
};

TEST_F(ContentViewTest, EmptyStoreShowsOnlyThePlaceholderAndLeavesTheCameraAlone) {
    ContentView view;
    EXPECT_THAT(ListaGrupos, ElementsAre(" Sin grupo"));
    EXPECT_TRUE(ListaSubgrupos.empty());
    EXPECT_TRUE(ListaEscenas.empty());
    EXPECT_THAT(flags(view), ElementsAre(true, true, true, true, true));
    EXPECT_TRUE(bench_.camera->transfers().empty());
}

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

TEST_F(ContentViewTest, FlagsFollowTheTree) {
    storeSample();
    ContentView view;
    choose(view, "Norte");
    view.selectedSubgrupo = 2;
    view.actualizarEscenas();
    EXPECT_THAT(flags(view), ElementsAre(false, false, false, true, true));

    bench_.camera->forgetTransfers();
    choose(view, "Sur");
    EXPECT_THAT(flags(view), ElementsAre(true, true, true, true, true));
    EXPECT_TRUE(ListaSubgrupos.empty());
    EXPECT_TRUE(ListaEscenas.empty());
    EXPECT_EQ(view.selectedSubgrupo, 2);
    EXPECT_TRUE(bench_.camera->transfers().empty());

    view.selectedGrupo = -1;
    view.actualizarSubgrupos();
    EXPECT_THAT(flags(view), ElementsAre(true, true, true, true, true));
}

TEST_F(ContentViewTest, EveryRefreshWritesItsSelectionTwiceSoThatWatchersSeeAChange) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 1, 1)});
    ContentView view;
    std::vector<std::string> writes;
    view.selectedGrupo.observe(
        [&](std::int64_t value) { writes.push_back("grupo " + std::to_string(value)); });
    view.selectedSubgrupo.observe(
        [&](std::int64_t value) { writes.push_back("subgrupo " + std::to_string(value)); });
    view.selectedEscena.observe(
        [&](std::int64_t value) { writes.push_back("escena " + std::to_string(value)); });
    int redraws = 0;
    view.observeAllFields([&] { ++redraws; });

    view.actualizarGrupos();
    EXPECT_THAT(writes,
                ElementsAre("grupo 500", "grupo 0", "subgrupo -1", "subgrupo 0", "escena -1", "escena 0"));
    EXPECT_EQ(redraws, 17);  // those six, eight flags and the three sliders
}

TEST_F(ContentViewTest, WithoutASceneTheCameraGoesToTheOrigin) {
    storeSample();
    ContentView view;
    choose(view, "Norte");
    Gruposss["Norte"].erase("aula A");
    view.PickerEscenaChanged();
    EXPECT_EQ(bench_.camera->target().pan, 0);
    EXPECT_EQ(bench_.camera->target().zoom, 0);
    EXPECT_EQ(view.SliderPanValue, 0.0);
}

TEST_F(ContentViewTest, DemoModeFollowsTheSelectionWithoutACamera) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 2, 3)});
    DemoMode = true;
    ContentView view;
    EXPECT_EQ(view.SliderZoomValue, 3.0);
    EXPECT_TRUE(bench_.camera->transfers().empty());
}

TEST_F(ContentViewTest, ImpossibleSelectionsAndZoomsAreFatal) {
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
         &ContentView::PickerEscenaChanged}};
    for (const auto &[prepare, act] : rows) EXPECT_EXIT(after(prepare, act), KilledBySignal(SIGABRT), "");
}

TEST_F(ContentViewTest, ACameraThatRefusesTheZoomEndsTheProgramWithTheDialog) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 2, 3)});
    bench_.camera->refuse({1, 0x0B, support::kSetCur});
    EXPECT_EXIT(ContentView(), testing::ExitedWithCode(0), "unable to write new value to control zoom-abs");
}

TEST(ElementLists, TellWatchersOfTheirSelectionAndHaveAnIdEach) {
    ContentView::L_Grupos centres;
    ContentView::L_Subgrupos rooms;
    std::vector<std::int64_t> seen;
    centres.selectedElemento.observe([&](std::int64_t value) { seen.push_back(value); });
    centres.actualizaLista({"Norte", "Sur"});
    centres.selectedElemento = 1;
    EXPECT_THAT(seen, ElementsAre(1));
    EXPECT_EQ(centres.elementosCount(), 2);
    EXPECT_NE(centres.id.get(), rooms.id.get());
}

}  // namespace
