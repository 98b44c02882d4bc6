#include <gmock/gmock.h>

#include <set>

#include "product/product.h"
#include "application_fixture.h"

namespace {

using MenuTest = ApplicationTest;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

TEST_F(MenuTest, NudgesMoveOneUnitFromWhereTheCameraPoints) {
    launch();
    struct Row {
        const char *command;
        double pan, tilt, zoom;
    };
    for (const Row &row :
         {Row{"Mover_Derecha_Delegate", 3600, 0, 0}, Row{"Mover_Arriba_Delegate", 3600, 3600, 0},
          Row{"Mover_ZoomIn_Delegate", 3600, 3600, 10}, Row{"Mover_Izquierda_Delegate", 0, 3600, 10},
          Row{"Mover_Izquierda_Delegate", -3600, 3600, 10}, Row{"Mover_Abajo_Delegate", -3600, 0, 10},
          Row{"Mover_ZoomOut_Delegate", -3600, 0, 0}, Row{"Mover_ZoomOut_Delegate", -3600, 0, 0}}) {
        command(row.command);
        const auto target = bench_.camera->target();
        EXPECT_THAT((std::vector{target.pan, target.tilt, target.zoom}),
                    testing::ElementsAre(row.pan, row.tilt, row.zoom))
            << row.command;
    }
}

TEST_F(MenuTest, NudgesBeforeTheLaunchDoNothing) {
    AppDelegate delegate;
    delegate.Mover_Derecha_Delegate();
    delegate.Mover_ZoomIn_Delegate();
    EXPECT_TRUE(bench_.camera->transfers().empty());
}

TEST_F(MenuTest, PagesOpenInTheBrowser) {
    launch();
    CaptureStdout();
    command("PaginaZEL");
    EXPECT_EQ(GetCapturedStdout(), "Menú!\n");
    CaptureStdout();
    command("PaginaMultimodal");
    EXPECT_EQ(GetCapturedStdout(), "");
    EXPECT_THAT(pages_->opened,
                testing::ElementsAre(product::kRemoteTeachingPage, product::kBlendedLearningPage));
}

TEST_F(MenuTest, AboutBoxShowsTheVersionInItsTitle) {
    launch();
    command("AcercaDe");
    ASSERT_EQ(alerts_.shown().size(), 1u);
    const auto &about = alerts_.shown().front();
    EXPECT_EQ(about.windowTitle, "Versión 1.0");
    EXPECT_THAT(about.informativeText, testing::MatchesRegex("Para mas información, contacte con .+@.+"));
    EXPECT_THAT(about.buttons, testing::ElementsAre("Aceptar"));
}

TEST_F(MenuTest, EveryCommandIsReachableByKeyboardAndNoTwoShareAShortcut) {
    launch();
    std::set<QString> shortcuts;
    for (const QAction *menu : delegate_->mainWindow()->menuBar()->actions()) {
        std::set<QChar> mnemonics;
        for (const QAction *command : menu->menu()->actions()) {
            if (command->isSeparator()) continue;
            const qsizetype ampersand = command->text().indexOf(u'&');
            ASSERT_GE(ampersand, 0) << command->text().toStdString();
            EXPECT_TRUE(mnemonics.insert(command->text().at(ampersand + 1).toLower()).second)
                << command->text().toStdString();
            for (const QKeySequence &shortcut : command->shortcuts())
                EXPECT_TRUE(shortcuts.insert(shortcut.toString()).second)
                    << shortcut.toString().toStdString();
        }
    }
    EXPECT_EQ(menuCommands().size(), 12);  // the eleven commands and "Salir"
}

TEST_F(MenuTest, ShortcutsMoveTheCameraFromAPickerToo) {
    launch();
    auto *picker = find<QComboBox>("pickerCentro");
    picker->setFocus();
    QTest::keyClick(picker, Qt::Key_Right, Qt::ControlModifier);
    QTest::keyClick(picker, Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(bench_.camera->target().pan, 3600);
    EXPECT_EQ(bench_.camera->target().zoom, 10);
}

}  // namespace
