#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QLocale>
#include <QPushButton>

#include <clocale>
#include <cstdio>

namespace {

TEST(Spanish, IsSpokenByQtsOwnButtons) {
    QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Open |
                         QDialogButtonBox::Save | QDialogButtonBox::Yes);
    const auto title = [&](QDialogButtonBox::StandardButton button) {
        return box.button(button)->text().remove(u'&').toStdString();
    };
    EXPECT_EQ(title(QDialogButtonBox::Ok), "Aceptar");
    EXPECT_EQ(title(QDialogButtonBox::Cancel), "Cancelar");
    EXPECT_EQ(title(QDialogButtonBox::Open), "Abrir");
    EXPECT_EQ(title(QDialogButtonBox::Save), "Guardar");
    EXPECT_EQ(title(QDialogButtonBox::Yes), "Sí");
}

TEST(Spanish, FillsTheGapsOfQtsTranslation) {
    EXPECT_EQ(QCoreApplication::translate("QAbstractFileIconProvider", "Folder").toStdString(), "Carpeta");
    EXPECT_EQ(QCoreApplication::translate("AnotherContext", "Folder").toStdString(), "Folder");
}

TEST(Spanish, FormatsForThePersonButNotForTheCamera) {
    EXPECT_EQ(QLocale().toString(1.5).toStdString(), "1,5");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    float half = 0;
    EXPECT_EQ(std::sscanf("0.5", "%g", &half), 1);
    EXPECT_EQ(half, 0.5F);
}

}  // namespace
