#include "ui/picker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

namespace {

using testing::ElementsAre;

class PickerTest : public testing::Test {
 protected:
    PickerTest() {
        picker_.onChosen([this](int index) { chosen_.push_back(index); });
        picker_.show();
    }

    ui::Picker picker_;
    std::vector<int> chosen_;
};

TEST_F(PickerTest, FillingAndSettingTheIndexAreSilent) {
    picker_.show({"a", "b"}, 0);
    picker_.show({"a", "b"}, 1);
    picker_.show({}, 0);
    picker_.show({"c"}, 500);
    EXPECT_EQ(picker_.currentIndex(), -1);
    picker_.show({"c"}, 0);
    EXPECT_TRUE(chosen_.empty());
    EXPECT_EQ(picker_.currentText(), QStringLiteral("c"));
}

TEST_F(PickerTest, OnlyAnotherEntryIsReportedAndOnlyOnce) {
    picker_.show({"a", "b", "c"}, 0);
    QTest::keyClick(&picker_, Qt::Key_Down);
    QTest::keyClick(&picker_, Qt::Key_Down);
    QTest::keyClick(&picker_, Qt::Key_Down);  // the last entry is chosen already
    EXPECT_THAT(chosen_, ElementsAre(1, 2));

    chosen_.clear();
    picker_.showPopup();
    QTest::keyClick(picker_.view(), Qt::Key_Return);
    EXPECT_TRUE(chosen_.empty());
    picker_.showPopup();
    QTest::keyClick(picker_.view(), Qt::Key_Home);
    QTest::keyClick(picker_.view(), Qt::Key_Return);
    EXPECT_THAT(chosen_, ElementsAre(0));
}

TEST_F(PickerTest, ANameThatIsCutIsReadWholeInATooltip) {
    const std::string name =
        "Escuela Técnica Superior de <Ingeniería> de Caminos, Canales, Puertos y demás obras públicas del "
        "Estado";
    picker_.resize(120, picker_.height());
    const auto hover = [](QWidget *over, QPoint at) {
        QHelpEvent help(QEvent::ToolTip, at, over->mapToGlobal(at));
        QApplication::sendEvent(over, &help);
        return QToolTip::isVisible() ? QToolTip::text().toStdString() : std::string();
    };
    picker_.show({"Aula", name}, 0);
    EXPECT_EQ(hover(&picker_, {5, 5}), "");
    picker_.show({"Aula", name}, 1);
    EXPECT_THAT(hover(&picker_, {5, 5}), testing::HasSubstr("Superior de &lt;Ingeniería&gt;"));

    picker_.showPopup();
    auto *list = picker_.view();
    QToolTip::hideText();
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
    EXPECT_EQ(hover(list->viewport(), list->visualRect(list->model()->index(0, 0)).center()), "");
    EXPECT_NE(hover(list->viewport(), list->visualRect(list->model()->index(1, 0)).center()), "");
}

TEST_F(PickerTest, TheWheelMovesNoCamera) {
    picker_.show({"a", "b"}, 0);
    QWheelEvent wheel({5, 5}, picker_.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&picker_, &wheel);
    EXPECT_EQ(picker_.currentIndex(), 0);
    EXPECT_TRUE(chosen_.empty());
}

}  // namespace
