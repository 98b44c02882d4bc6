#include "ui/content_widget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QHelpEvent>
#include <QLabel>
#include <QRegularExpression>
#include <QStyleOptionButton>
#include <QToolTip>
#include <QWheelEvent>

#include "support/bench_test.h"
#include "support/window_user.h"
#include "ui/content_view.h"

namespace {

using support::scene;
using testing::ElementsAre;

class ContentWidgetTest : public support::BenchTest, protected support::WindowUser {
 protected:
    /// Builds view and widget over what the store holds by now.
    void start() {
        view_ = std::make_unique<ContentView>();
        widget_ = std::make_unique<ui::ContentWidget>(*view_);
        widget_->show();
        widget_->activateWindow();
        bench_.camera->forgetTransfers();
    }

    [[nodiscard]] QWidget *window() const override { return widget_.get(); }

    std::unique_ptr<ContentView> view_;
    std::unique_ptr<ui::ContentWidget> widget_;
};

TEST_F(ContentWidgetTest, EachChoiceOfAnotherEntryWalksTheTreeAndMovesTheCameraOnce) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    EXPECT_EQ(entries("pickerAula"), QStringList({"aula A", "Aula B", "Vacía"}));
    EXPECT_EQ(picker("pickerEscena")->currentText(), QStringLiteral("Mesa"));
    EXPECT_EQ(bench_.panTiltSets(), 1);
    EXPECT_EQ(bench_.zoomSets(), 1);

    choose("pickerAula", "Aula B");
    EXPECT_EQ(entries("pickerEscena"), QStringList({"Pizarra", "Puerta"}));
    choose("pickerEscena", "Puerta");
    EXPECT_EQ(bench_.camera->target().pan, -72000);

    auto *scenes = picker("pickerEscena");
    const auto chooseInPopup = [scenes](Qt::Key key) {
        scenes->showPopup();
        QTest::keyClick(scenes->view(), key);
        QTest::keyClick(scenes->view(), Qt::Key_Return);
    };
    chooseInPopup(Qt::Key_End);  // what was chosen already
    QWheelEvent wheel({5, 5}, scenes->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(scenes, &wheel);
    EXPECT_EQ(bench_.panTiltSets(), 3);
    EXPECT_EQ(bench_.zoomSets(), 3);
    chooseInPopup(Qt::Key_Home);
    EXPECT_EQ(bench_.panTiltSets(), 4);
    EXPECT_EQ(bench_.camera->target().pan, 28800);
}

TEST_F(ContentWidgetTest, ALongListDropsDownAndANameThatIsCutIsReadWholeInATooltip) {
    const std::string medium = "Laboratorio de Máquinas Eléctricas, planta baja";
    const std::string cut =
        medium + " del edificio de <Ingeniería> de Caminos, Canales, Puertos y demás obras";
    for (int i = 10; i < 50; ++i) storeRoom("Norte", std::to_string(i), {});
    for (const std::string &room : {medium, cut}) storeRoom("Norte", room, {});
    start();
    const auto hover = [](QWidget *over, QPoint at) {
        QToolTip::hideText();
        EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
        QHelpEvent help(QEvent::ToolTip, at, over->mapToGlobal(at));
        QApplication::sendEvent(over, &help);
        return QToolTip::isVisible() ? QToolTip::text().toStdString() : std::string();
    };
    auto *rooms = picker("pickerAula");
    choose("pickerCentro", "Norte");
    EXPECT_EQ(hover(rooms, {5, 5}), "");
    choose("pickerAula", medium.c_str());
    EXPECT_THAT(hover(rooms, {5, 5}), testing::HasSubstr(medium));

    rooms->showPopup();
    auto *list = rooms->view();
    EXPECT_FALSE(list->window()->frameGeometry().contains(rooms->mapToGlobal(rooms->rect().center())));
    EXPECT_EQ(list->viewport()->height() / list->sizeHintForRow(0), 16);
    list->scrollToBottom();
    const auto hoverEntry = [&](int entry) {
        return hover(list->viewport(), list->visualRect(list->model()->index(entry, 0)).center());
    };
    EXPECT_EQ(hoverEntry(40), "") << "the list is wider than the box";
    EXPECT_THAT(hoverEntry(41), testing::HasSubstr("edificio de &lt;Ingeniería&gt;"));
}

TEST_F(ContentWidgetTest, KeysThatCameWhileTheCameraWasBusyMeetNoStaleSelection) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    choose("pickerAula", "Vacía");
    // No events are processed between these, as when both keys were waiting.
    QTest::keyClick(picker("pickerCentro"), Qt::Key_Down);
    QTest::keyClick(picker("pickerAula"), Qt::Key_Up);
    QTest::mouseClick(button("buttonRemoveAula"), Qt::LeftButton);
    EXPECT_TRUE(alerts_.shown().empty());
    EXPECT_EQ(view_->selectedGrupo, 2);
}

TEST_F(ContentWidgetTest, FocusLeavesADisabledButtonForItsNeighbour) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 1, 1)});
    start();
    for (const auto &[remove, neighbour] : {std::pair{"buttonRemoveEscena", "buttonAddEscena"},
                                            std::pair{"buttonRemoveAula", "buttonAddAula"}}) {
        button(remove)->setFocus();
        alerts_.accept();
        QTest::keyClick(button(remove), Qt::Key_Space);
        EXPECT_EQ(widget_->focusWidget(), button(neighbour));
    }
}

TEST_F(ContentWidgetTest, NudgeButtonsMoveByTheirSteps) {
    start();
    struct Row {
        const char *button;
        double pan, tilt, zoom;
    };
    // From the origin, each step on top of the one before; the camera rounds to whole steps toward zero.
    for (const Row &row : {Row{"buttonArriba", 0, 18000, 0}, Row{"buttonDerecha", 28800, 18000, 0},
                           Row{"buttonAcercar", 28800, 18000, 40}, Row{"buttonAbajo", 28800, 0, 40},
                           Row{"buttonIzquierda", 0, 0, 40}, Row{"buttonAlejar", 0, 0, 0}}) {
        click(row.button);
        const auto target = bench_.camera->target();
        EXPECT_THAT((std::vector{target.pan, target.tilt, target.zoom}),
                    ElementsAre(row.pan, row.tilt, row.zoom))
            << row.button;
    }
}

TEST_F(ContentWidgetTest, ScenesAreSavedWhereTheCameraPointsAndDeletedByIndex) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    choose("pickerAula", "Aula B");
    click("buttonDerecha");
    click("buttonAcercar");
    alerts_.accept("Puerta");
    click("buttonAddEscena");

    const std::vector<ManualPreset> saved{scene("Pizarra", 8, 5, 100), scene("Puerta", -20, 0, 0),
                                          scene("Puerta", 16, 5, 140)};
    EXPECT_EQ(FileToPreset("Presets/Norte/Aula B.presets"), saved);
    EXPECT_EQ(Gruposss["Norte"]["Aula B"], saved);
    EXPECT_EQ(bench_.camera->target().pan, 28800);  // back to the room's first scene
    EXPECT_EQ(picker("pickerEscena")->currentIndex(), 0);

    choose("pickerEscena", "Puerta");
    alerts_.accept();
    click("buttonRemoveEscena");
    EXPECT_EQ(FileToPreset("Presets/Norte/Aula B.presets"), (std::vector{saved[0], saved[2]}));
    for (int left = 2; left > 0; --left) {
        alerts_.accept();
        click("buttonRemoveEscena");
    }
    EXPECT_TRUE(onDisk("Presets/Norte/Aula B.presets"));
    EXPECT_FALSE(button("buttonRemoveEscena")->isEnabled());

    std::filesystem::remove_all(store());
    alerts_.accept("Nueva");
    click("buttonAddEscena");
    EXPECT_EQ(entries("pickerEscena"), QStringList("Nueva")) << "shown even where it could not be written";
}

TEST_F(ContentWidgetTest, CancelledEmptyAndKnownNamesChangeNothing) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    bench_.camera->forgetTransfers();
    const auto before = Gruposss;
    const std::tuple<const char *, const char *, std::vector<const char *>> rows[] = {
        {"buttonAddCentro", "Introduzca el nombre del centro", {"", "Sur"}},
        {"buttonAddAula", "Introduzca el nombre del aula o espacio", {"", "Aula B"}},
        {"buttonAddEscena", "Introduzca el nombre de la escena", {""}},
        {"buttonRemoveCentro", "¿Seguro que desea eliminar el centro?", {}},
        {"buttonRemoveAula", "¿Seguro que desea eliminar el aula o espacio?", {}},
        {"buttonRemoveEscena", "¿Seguro que desea eliminar la escena?", {}}};
    for (const auto &[name, question, names] : rows) {
        alerts_.cancel("Nuevo");
        click(name);
        EXPECT_EQ(alerts_.shown().back().messageText, question);
        EXPECT_THAT(alerts_.shown().back().buttons,
                    ElementsAre(names.empty() ? "Confirmar" : "OK", "Cancelar"));
        for (const char *answer : names) {
            alerts_.accept(answer);
            click(name);
        }
    }
    EXPECT_EQ(Gruposss, before);
    EXPECT_EQ(obtenerPresets(), before);
    EXPECT_EQ(picker("pickerCentro")->currentText(), QStringLiteral("Norte"));
    EXPECT_TRUE(bench_.camera->transfers().empty());
}

TEST_F(ContentWidgetTest, LogosArePicturesInTheMiddleOfWhiteAndAreCalledSo) {
    start();
    widget_->setPalette(QPalette(Qt::black));
    for (const auto &[name, picture] :
         {std::pair{"LogoZEL", QSize(80, 60)}, std::pair{"LogoKAV", QSize(100, 40)}}) {
        auto *logo = find<QWidget>(name);
        const QImage seen = logo->grab().toImage();
        QRect drawn;
        for (int x = 0; x < seen.width(); ++x)
            for (int y = 0; y < seen.height(); ++y)
                if (seen.pixelColor(x, y) != Qt::white) drawn |= QRect(x, y, 1, 1);
        const QRect room(QPoint(4, 4), picture);
        EXPECT_EQ(seen.size(), picture + QSize(8, 8)) << name;
        EXPECT_TRUE(room.contains(drawn) && 2 * drawn.width() > room.width()) << name;
        EXPECT_LE((drawn.center() - room.center()).manhattanLength(), 4) << name;
        EXPECT_EQ(QAccessible::queryAccessibleInterface(logo)->role(), QAccessible::Graphic) << name;
    }
}

TEST_F(ContentWidgetTest, CutsNothingOffAndCoversNothingWhateverTheFont) {
    start();
    widget_->resize(600, 200);
    const auto area = [this](const QWidget *part) {
        return QRect(part->mapTo(widget_.get(), QPoint()), part->size());
    };
    for (const auto &[points, stretch] : {std::pair{9, 100}, {14, 100}, {20, 100}, {14, 60}}) {
        const support::DesktopFont font(points, stretch);
        // As large as the desktop's, as far as there is room.
        EXPECT_GE(widget_->font().pointSizeF(), std::min(points, 10));
        EXPECT_LE(widget_->font().pointSizeF(), points);
        QRegion covered;
        for (const QWidget *part : widget_->findChildren<QWidget *>()) {
            const auto *button = qobject_cast<const QPushButton *>(part);
            const auto *label = qobject_cast<const QLabel *>(part);
            const std::string name = part->objectName().toStdString() + "/" + std::to_string(points);
            if (button) {
                QStyleOptionButton option;
                option.initFrom(button);
                const QRect room =
                    button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button);
                const QSize text = button->fontMetrics().size(Qt::TextSingleLine, button->text());
                EXPECT_EQ(room.size().expandedTo(text), room.size()) << name;
            } else if (label) {
                EXPECT_GE(label->width(), label->sizeHint().width()) << name;
            } else if (!part->objectName().contains(QRegularExpression("^(picker|Logo)"))) {
                continue;
            }
            EXPECT_TRUE(widget_->rect().contains(area(part))) << name;
            EXPECT_FALSE(covered.intersects(area(part))) << name;
            covered += area(part);
        }
        const int margin = area(find<QWidget>("LogoZEL")).top();
        EXPECT_EQ(195 - area(button("buttonAcercar")).bottom() - 1, margin);
        EXPECT_EQ(600 - area(button("buttonRemoveEscena")).right() - 1, margin);
    }
}

TEST_F(ContentWidgetTest, TabFollowsTheEyeAndAScreenReaderSaysWhatEachPartIs) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    QStringList read;
    button("buttonArriba")->setFocus();
    for (int i = 0; i < 15; ++i) {
        const QWidget *part = widget_->focusWidget();
        const auto *pressed = qobject_cast<const QPushButton *>(part);
        read.append(part->accessibleName());
        EXPECT_TRUE(!pressed || read.last().startsWith(pressed->text())) << read.last().toStdString();
        QTest::keyClick(widget_->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(read, QStringList({"Arriba", "Izquierda", "Derecha", "Abajo", "Acercar", "Alejar", "Centro",
                                 "Añadir un centro", "Eliminar el centro", "Aula/Espacio",
                                 "Añadir un aula o espacio", "Eliminar el aula o espacio", "Escena",
                                 "Añadir una escena", "Eliminar la escena"}));
}

}  // namespace
