#include "ui/content_widget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QStyleOptionButton>

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

TEST_F(ContentWidgetTest, ChoosingEntriesWalksTheTreeAndMovesTheCameraOncePerChoice) {
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
    EXPECT_EQ(bench_.panTiltSets(), 3);
    EXPECT_EQ(bench_.zoomSets(), 3);
    EXPECT_EQ(bench_.camera->target().pan, -72000);
}

TEST_F(ContentWidgetTest, KeysThatCameWhileTheCameraWasBusyMeetNoStaleSelection) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    choose("pickerAula", "Vacía");
    // No events are processed between these, as when both keys were waiting.
    QTest::keyClick(picker("pickerCentro"), Qt::Key_Down);
    EXPECT_FALSE(picker("pickerAula")->isEnabled());
    EXPECT_FALSE(button("buttonRemoveAula")->isEnabled());
    QTest::keyClick(picker("pickerAula"), Qt::Key_Up);
    QTest::mouseClick(button("buttonRemoveAula"), Qt::LeftButton);
    EXPECT_TRUE(alerts_.shown().empty());
    EXPECT_EQ(view_->selectedGrupo, 2);
}

TEST_F(ContentWidgetTest, FocusLeavesADisabledButtonForItsNeighbour) {
    storeRoom(" Sin grupo", "Sala", {scene("Uno", 1, 1, 1)});
    start();
    button("buttonRemoveEscena")->setFocus();
    alerts_.accept();
    QTest::keyClick(button("buttonRemoveEscena"), Qt::Key_Space);
    EXPECT_EQ(widget_->focusWidget(), button("buttonAddEscena"));

    button("buttonRemoveAula")->setFocus();
    alerts_.accept();
    QTest::keyClick(button("buttonRemoveAula"), Qt::Key_Space);
    EXPECT_EQ(widget_->focusWidget(), button("buttonAddAula"));
}

TEST_F(ContentWidgetTest, PickersAndButtonsAreEnabledAsTheTreeAllows) {
    storeSample();
    start();
    const auto enabled = [this] {
        return std::vector<bool>{
            picker("pickerCentro")->isEnabled(),       picker("pickerAula")->isEnabled(),
            picker("pickerEscena")->isEnabled(),       button("buttonAddCentro")->isEnabled(),
            button("buttonRemoveCentro")->isEnabled(), button("buttonAddAula")->isEnabled(),
            button("buttonRemoveAula")->isEnabled(),   button("buttonAddEscena")->isEnabled(),
            button("buttonRemoveEscena")->isEnabled()};
    };
    EXPECT_THAT(enabled(), ElementsAre(true, false, false, true, true, true, false, false, false));
    choose("pickerCentro", "Norte");
    EXPECT_THAT(enabled(), ElementsAre(true, true, true, true, true, true, true, true, true));
    choose("pickerAula", "Vacía");
    EXPECT_THAT(enabled(), ElementsAre(true, true, false, true, true, true, true, true, false));
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

TEST_F(ContentWidgetTest, CentresAreAddedAndDeletedInMemoryAndOnDisk) {
    storeSample();
    start();
    alerts_.accept("Este");
    click("buttonAddCentro");
    EXPECT_TRUE(onDisk("Presets/Este"));
    EXPECT_EQ(entries("pickerCentro"), QStringList({" Sin grupo", "Este", "Norte", "Sur"}));
    EXPECT_EQ(picker("pickerCentro")->currentIndex(), 0);
    EXPECT_EQ(alerts_.shown().back().messageText, "Introduzca el nombre del centro");

    choose("pickerCentro", "Norte");
    alerts_.accept();
    click("buttonRemoveCentro");
    EXPECT_FALSE(onDisk("Presets/Norte"));
    EXPECT_EQ(entries("pickerCentro"), QStringList({" Sin grupo", "Este", "Sur"}));

    alerts_.accept();
    click("buttonRemoveCentro");  // the placeholder: asked, and nothing happens
    EXPECT_EQ(alerts_.shown().size(), 3u);
    EXPECT_TRUE(onDisk("Presets/Este"));
    EXPECT_TRUE(Gruposss.contains(scenes::kNoCentre));
}

TEST_F(ContentWidgetTest, TheChosenRoomAloneIsDeletedInMemoryAndOnDisk) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    choose("pickerAula", "Aula B");
    alerts_.accept();
    click("buttonRemoveAula");
    EXPECT_FALSE(onDisk("Presets/Norte/Aula B.presets"));
    EXPECT_TRUE(onDisk("Presets/Norte/aula A.presets"));
    EXPECT_EQ(entries("pickerAula"), QStringList({"aula A", "Vacía"}));
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
}

TEST_F(ContentWidgetTest, CancelledEmptyAndKnownNamesChangeNothing) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    bench_.camera->forgetTransfers();
    const scenes::SceneTree before = Gruposss;
    const auto writtenBefore =
        std::filesystem::last_write_time(documents_.path() / "Presets/Norte/aula A.presets");

    for (const char *name : {"buttonAddCentro", "buttonAddAula", "buttonAddEscena"}) {
        alerts_.cancel("Nuevo");
        click(name);
        alerts_.accept("");
        click(name);
    }
    for (const char *name : {"buttonRemoveCentro", "buttonRemoveAula", "buttonRemoveEscena"}) {
        alerts_.cancel();
        click(name);
    }
    alerts_.accept("Sur");
    click("buttonAddCentro");
    alerts_.accept("Aula B");
    click("buttonAddAula");

    EXPECT_EQ(Gruposss, before);
    EXPECT_EQ(std::filesystem::last_write_time(documents_.path() / "Presets/Norte/aula A.presets"),
              writtenBefore);
    EXPECT_FALSE(onDisk("Presets/Nuevo"));
    EXPECT_EQ(picker("pickerCentro")->currentText(), QStringLiteral("Norte"));
    EXPECT_TRUE(bench_.camera->transfers().empty());
}

TEST_F(ContentWidgetTest, FailedWritesStillRefresh) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    std::filesystem::remove_all(documents_.path() / "Presets");
    alerts_.accept("Nueva");
    click("buttonAddEscena");
    EXPECT_EQ(entries("pickerEscena"), QStringList({"Mesa", "Nueva"}));
}

TEST_F(ContentWidgetTest, LogosArePicturesForTheEyeAndForAScreenReader) {
    start();
    for (const char *name : {"LogoZEL", "LogoKAV"}) {
        auto *logo = find<QWidget>(name);
        QImage blank(logo->size(), QImage::Format_RGB32);
        blank.fill(Qt::white);
        EXPECT_NE(logo->grab().toImage().convertToFormat(QImage::Format_RGB32), blank) << name;
        EXPECT_EQ(QAccessible::queryAccessibleInterface(logo)->role(), QAccessible::Graphic) << name;
    }
}

class ContentWidgetFont : public ContentWidgetTest, public testing::WithParamInterface<int> {
 protected:
    ContentWidgetFont() : usual_(QApplication::font()) {
        QFont font = usual_;
        font.setPointSize(GetParam());
        QApplication::setFont(font);
    }
    ~ContentWidgetFont() override { QApplication::setFont(usual_); }

 private:
    QFont usual_;
};

INSTANTIATE_TEST_SUITE_P(Points, ContentWidgetFont, testing::Values(9, 14, 20));

TEST_P(ContentWidgetFont, CutsNothingOffAndCoversNothing) {
    storeSample();
    start();
    widget_->resize(600, 200);
    QCoreApplication::processEvents();
    // A desktop's usual font is shown as it is.
    EXPECT_EQ(widget_->font().pointSizeF() == GetParam(), GetParam() <= 9) << widget_->font().pointSizeF();
    std::vector<const QWidget *> parts;
    const auto isInside = [this](const QWidget &child) {
        return widget_->rect().contains(QRect(child.mapTo(widget_.get(), QPoint()), child.size()));
    };
    for (const auto *button : widget_->findChildren<QPushButton *>()) {
        QStyleOptionButton option;
        option.initFrom(button);
        const QRect contents =
            button->style()->subElementRect(QStyle::SE_PushButtonContents, &option, button);
        const QSize text = button->fontMetrics().size(Qt::TextSingleLine, button->text());
        EXPECT_TRUE(contents.size().expandedTo(text) == contents.size())
            << button->accessibleName().toStdString();
        EXPECT_TRUE(isInside(*button)) << button->accessibleName().toStdString();
        parts.push_back(button);
    }
    for (const auto *label : widget_->findChildren<QLabel *>()) {
        EXPECT_GE(label->width(), label->sizeHint().width()) << label->text().toStdString();
        EXPECT_TRUE(isInside(*label)) << label->text().toStdString();
        parts.push_back(label);
    }
    for (const char *logo : {"LogoZEL", "LogoKAV"}) parts.push_back(widget_->findChild<QWidget *>(logo));
    const auto area = [this](const QWidget *part) {
        return QRect(part->mapTo(widget_.get(), QPoint()), part->size());
    };
    const int margin = area(find<QWidget>("LogoZEL")).top();
    EXPECT_EQ(195 - area(button("buttonAcercar")).bottom() - 1, margin);
    EXPECT_EQ(600 - area(button("buttonRemoveEscena")).right() - 1, margin);
    for (const QWidget *one : parts)
        for (const QWidget *other : parts)
            if (one != other) {
                EXPECT_FALSE(area(one).intersects(area(other)))
                    << one->accessibleName().toStdString() << "/" << other->accessibleName().toStdString();
            }
}

TEST_F(ContentWidgetTest, TabFollowsTheEye) {
    storeSample();
    start();
    choose("pickerCentro", "Norte");
    QStringList order;
    button("buttonArriba")->setFocus();
    for (int i = 0; i < 15; ++i) {
        order.append(widget_->focusWidget()->objectName());
        QTest::keyClick(widget_->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order, QStringList({"buttonArriba", "buttonIzquierda", "buttonDerecha", "buttonAbajo",
                                  "buttonAcercar", "buttonAlejar", "pickerCentro", "buttonAddCentro",
                                  "buttonRemoveCentro", "pickerAula", "buttonAddAula", "buttonRemoveAula",
                                  "pickerEscena", "buttonAddEscena", "buttonRemoveEscena"}));
}

}  // namespace
