#include <gmock/gmock.h>

#include <set>

#include "platform/qt/help.h"
#include "product/product.h"
#include "support/application_fixture.h"

namespace {

using MenuTest = ApplicationTest;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

TEST_F(MenuTest, ShortcutsNudgeByOneUnitFromWhereTheCameraPointsAndFromAPickerToo) {
    launch();
    struct Row {
        Qt::Key key;
        double pan, tilt, zoom;
    };
    for (const Row &row :
         {Row{Qt::Key_Right, 3600, 0, 0}, Row{Qt::Key_Up, 3600, 3600, 0}, Row{Qt::Key_Plus, 3600, 3600, 10},
          Row{Qt::Key_Left, 0, 3600, 10}, Row{Qt::Key_Left, -3600, 3600, 10}, Row{Qt::Key_Down, -3600, 0, 10},
          Row{Qt::Key_Minus, -3600, 0, 0}, Row{Qt::Key_Minus, -3600, 0, 0}}) {
        shortcut(row.key);
        const auto target = bench_.camera->target();
        EXPECT_THAT((std::vector{target.pan, target.tilt, target.zoom}),
                    testing::ElementsAre(row.pan, row.tilt, row.zoom))
            << row.key;
    }
}

TEST_F(MenuTest, NudgesBeforeTheLaunchDoNothing) {
    AppDelegate delegate;
    for (const auto nudge : {&AppDelegate::Mover_Izquierda_Delegate, &AppDelegate::Mover_Derecha_Delegate,
                             &AppDelegate::Mover_Arriba_Delegate, &AppDelegate::Mover_Abajo_Delegate,
                             &AppDelegate::Mover_ZoomIn_Delegate, &AppDelegate::Mover_ZoomOut_Delegate})
        (delegate.*nudge)();
    EXPECT_TRUE(bench_.camera->transfers().empty());
}

TEST_F(MenuTest, PagesOpenInTheBrowser) {
    launch();
    CaptureStdout();
    command("PaginaZEL");
    command("PaginaMultimodal");
    EXPECT_EQ(GetCapturedStdout(), "Menú!\n") << "of the first alone";
    EXPECT_THAT(pages_->opened,
                testing::ElementsAre(product::kRemoteTeachingPage, product::kBlendedLearningPage));
}

TEST_F(MenuTest, ManualAndSelfCheckAreFoundFromTheProgramsFolderAndMissedAloud) {
    launch();
    const auto place = documents_.root() / "El #1 a 100 %";
    const auto programs = QString::fromStdString(place / "bin");
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", (place / "searched").c_str());
    QTest::keyClick(picker("pickerCentro"), Qt::Key_F1);  // beside the tests there is neither
    command("SelfCheck");
    EXPECT_EQ(alerts_.shown().size(), 2u);

    support::writeFile(place / "share/zelvoria-camara/manual.html", "");
    platform::openManual(programs);
    EXPECT_THAT(pages_->opened, testing::ElementsAre(testing::EndsWith("/El%20%231%20a%20100%20%25/share/"
                                                                       "zelvoria-camara/manual.html")));
    for (const char *folder : {"searched", "bin"}) {
        const auto program = place / folder / "zelvoria-diagnostico";
        support::writeFile(program, "#!/bin/sh\n: >\"$0.started\"\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        platform::startSelfCheck(programs);
        EXPECT_TRUE(QTest::qWaitFor([&] { return exists(place / folder / "zelvoria-diagnostico.started"); }));
    }
    qputenv("PATH", path);
}

TEST_F(MenuTest, AboutBoxShowsTheVersionInItsTitle) {
    launch();
    command("AcercaDe");
    ASSERT_EQ(alerts_.shown().size(), 1u);
    const auto &about = alerts_.shown().front();
    EXPECT_EQ(about.messageText, product::kMakerSentence);
    EXPECT_EQ(about.windowTitle, "Versión 1.0");
    EXPECT_THAT(about.informativeText, testing::MatchesRegex("Para mas información, contacte con .+@.+"));
    EXPECT_THAT(about.buttons, testing::ElementsAre("Aceptar"));
}

TEST_F(MenuTest, EveryCommandIsReadAndReachedByKeyboard) {
    launch();
    QStringList read;
    for (QAction *menu : delegate_->mainWindow()->menuBar()->actions()) {
        std::set<QChar> mnemonics;
        read.append(menu->text().remove(u'&') + u':');
        for (const QAction *command : menu->menu()->actions()) {
            const QString title = command->text();
            read.last() += command->isSeparator() ? QStringLiteral(" /") : u' ' + QString(title).remove(u'&');
            if (command->isSeparator()) continue;
            EXPECT_TRUE(mnemonics.insert(title[title.indexOf(u'&') + 1].toLower()).second)
                << title.toStdString();
        }
    }
    EXPECT_EQ(read, QStringList({"Archivo: Importar escenas… Exportar escenas… / Salir",
                                 "Cámara: Mover a la izquierda Mover a la derecha Mover hacia arriba Mover "
                                 "hacia abajo / Acercar Alejar",
                                 "Ayuda: Manual ¿Por qué no se mueve la cámara? / Soporte a la docencia "
                                 "remota Docencia multimodal / Acerca de…"}));
}

}  // namespace
