#include <gmock/gmock.h>

#include <QTimer>

#include "platform/qt/qt_alerts.h"
#include "support/application_fixture.h"

namespace {

using Journey = ApplicationTest;

TEST_F(Journey, FromAnEmptyStoreToASavedSceneThatIsThereTomorrow) {
    launch();
    EXPECT_EQ(entries("pickerCentro"), QStringList({" Sin grupo"}));
    EXPECT_EQ(bench_.panTiltSets(), 0);

    alerts_.accept("Norte");
    click("buttonAddCentro");
    choose("pickerCentro", "Norte");
    alerts_.accept("Aula Ñ");
    click("buttonAddAula");
    click("buttonDerecha");
    click("buttonArriba");
    click("buttonAcercar");
    alerts_.accept("Pizarra");
    click("buttonAddEscena");
    for (int i = 0; i < 3; ++i) click("buttonIzquierda");
    alerts_.accept("Puerta");
    click("buttonAddEscena");
    EXPECT_EQ(bench_.camera->target().pan, 28800);
    EXPECT_EQ(FileToPreset("Presets/Norte/Aula Ñ.presets"),
              (std::vector{scene("Pizarra", 8, 5, 40), scene("Puerta", -16, 5, 40)}));

    restart();
    choose("pickerCentro", "Norte");
    choose("pickerEscena", "Puerta");
    EXPECT_EQ(bench_.camera->target().pan, -57600);
    EXPECT_EQ(bench_.camera->target().zoom, 40);

    for (const char *button : {"buttonRemoveEscena", "buttonRemoveAula", "buttonRemoveCentro"}) {
        alerts_.accept();
        click(button);
    }
    EXPECT_TRUE(std::filesystem::is_empty(documents_.path() / "Presets"));
}

TEST_F(Journey, ExportImportAndRestartBringTheStoreOneLevelDeeper) {
    storeRoom("Norte", "Sala", {scene("Uno", 1, 2, 3)});
    storeRoom(scenes::kNoCentre, "Suelta", {scene("Dos", 4, 5, 6)});
    launch();
    panels_->savePath = (documents_.downloads() / "copia").string();
    shortcut(Qt::Key_E);
    ASSERT_TRUE(std::filesystem::exists(documents_.downloads() / "copia.prs"));

    alerts_.accept();
    choose("pickerCentro", "Norte");
    click("buttonRemoveCentro");
    panels_->openPath = (documents_.downloads() / "copia.prs").string();
    for (int i = 0; i < 3; ++i) alerts_.accept();
    shortcut(Qt::Key_I);
    EXPECT_EQ(entries("pickerCentro"), QStringList({" Sin grupo"}));  // only after a restart
    restart();

    EXPECT_EQ(entries("pickerCentro"), QStringList({" Sin grupo", "Presets"}));
    choose("pickerCentro", "Presets");
    EXPECT_EQ(entries("pickerAula"), QStringList({"Suelta"}));
    EXPECT_EQ(FileToPreset("Presets/Presets/Norte/Sala.presets"), (std::vector{scene("Uno", 1, 2, 3)}));
}

/// Answers the real alert that is on the screen as a person would, by its default button.
void pressDefaultButtonSoon() {
    QTimer::singleShot(100, [] {
        if (auto *alert = QApplication::activeModalWidget()) QTest::keyClick(alert, Qt::Key_Return);
    });
}

TEST_F(Journey, CameraUnpluggedBeforeANudgeEndsTheProgramAfterTheRealAlert) {
    const auto journey = [this] {
        launch();
        auto services = platform::services();
        services.alerts = std::make_shared<platform::QtAlerts>();
        platform::installServices(services);
        bench_.bus->unplug(bench_.camera);
        pressDefaultButtonSoon();
        click("buttonDerecha");
    };
    EXPECT_EXIT(journey(), testing::ExitedWithCode(0), "");
}

TEST_F(Journey, StartWithoutACameraShowsTheAlertBeforeAnyWindow) {
    storeRoom(scenes::kNoCentre, "Sala", {scene("Uno", 1, 2, 3)});
    bench_.bus->unplug(bench_.camera);
    EXPECT_EXIT(launch(), testing::ExitedWithCode(0), "");
}

}  // namespace
