// The real file panels, used the way a person does, in a folder of the test's own.
#include "platform/qt/qt_file_panels.h"
#include "platform/qt/window_order.h"

#include "surroundings.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <filesystem>

namespace {

QFileDialog *shownPanel(const char *name) {
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == QLatin1String(name) && window->isVisible())
            return qobject_cast<QFileDialog *>(window);
    }
    return nullptr;
}

QLineEdit *nameField(QFileDialog &panel) {
    return panel.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
}

/// Every text that `panel` shows or speaks.
QStringList textsOf(const QWidget &panel) {
    QStringList texts{panel.windowTitle()};
    for (const auto *widget : panel.findChildren<QWidget *>())
        texts << widget->toolTip() << widget->accessibleName() << widget->accessibleDescription();
    for (const auto *label : panel.findChildren<QLabel *>()) texts << label->text();
    for (const auto *button : panel.findChildren<QAbstractButton *>()) texts << button->text();
    for (const auto *action : panel.findChildren<QAction *>()) texts << action->text();
    for (const auto *box : panel.findChildren<QComboBox *>()) {
        for (int i = 0; i < box->count(); ++i) texts << box->itemText(i);
    }
    for (const auto *view : panel.findChildren<QTreeView *>()) {
        const QAbstractItemModel &model = *view->model();
        for (int column = 0; column < model.columnCount(); ++column) {
            texts << model.headerData(column, Qt::Horizontal).toString();
            for (int row = 0; row < model.rowCount(view->rootIndex()); ++row)
                texts << model.index(row, column, view->rootIndex()).data().toString();
        }
    }
    texts.removeAll(QString());
    return texts;
}

/// Words of Qt's English panels that Spanish does not have.
void expectNoEnglish(const QStringList &texts) {
    static const QRegularExpression english(
        QStringLiteral(
            "\\b(Look in|File|Files|Folder|Directory|Name|Size|Type|Kind|Date|Modified|Computer|Save|Open|"
            "Cancel|Choose|All|Back|Forward|Parent|Create|New|List|Detail|View|Show|Hidden|Delete|Rename|"
            "Yes|Sidebar|Unknown|Drive|already exists|not found|AM|PM)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    for (QString text : texts) {
        text.remove(u'&');
        EXPECT_FALSE(english.match(text).hasMatch()) << text.toStdString();
    }
}

class FilePanels : public FolderTest {
 protected:
    void SetUp() override {
        FolderTest::SetUp();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(path("settings")));
        std::filesystem::create_directories(path("dir/Carpeta"));
        write(path("dir/existe.txt"), std::string(5000, 'x'));
        write(path("dir/escenas.prs"), "x");
        write(path("dir/.oculto.prs"), "x");
        previous_ = QDir::currentPath();
        QDir::setCurrent(QString::fromStdString(path("dir")));
    }
    void TearDown() override { QDir::setCurrent(previous_); }

    /// The save panel, in this test's folder.
    QFileDialog &beginSaving(const std::string &name) {
        panels_.beginSavePanel(name, std::nullopt, [this](const std::string &file) {
            chosen_.push_back(file);
            panelStillShown_ = shownPanel("savePanel") != nullptr;
        });
        QFileDialog *panel = shownPanel("savePanel");
        if (!panel) throw std::runtime_error("no save panel");
        panel->setDirectory(QString::fromStdString(path("dir")));
        static_cast<void>(QTest::qWaitForWindowActive(panel));
        return *panel;
    }

    platform::QtFilePanels panels_;
    std::vector<std::string> chosen_;
    bool panelStillShown_ = false;

 private:
    QString previous_;
};

TEST_F(FilePanels, SavePanelReturnsAtOnceAndTellsTheNameLater) {
    QFileDialog &panel = beginSaving("2024-03-05");
    EXPECT_EQ(nameField(panel)->text(), QStringLiteral("2024-03-05"));
    EXPECT_FALSE(panel.isModal());
    EXPECT_TRUE(panel.windowFlags() & Qt::WindowStaysOnTopHint);

    QTest::keyClicks(nameField(panel), QStringLiteral("copia"));
    EXPECT_EQ(&beginSaving("2024-03-06"), &panel) << "asked for again, the open one comes to the front";
    QTest::keyClick(nameField(panel), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !chosen_.empty(); }, 3000));

    EXPECT_EQ(chosen_, std::vector{path("dir/copia")}) << "no extension is added";
    EXPECT_FALSE(panelStillShown_) << "the panel is gone before the long work begins";
}

TEST_F(FilePanels, SavePanelAsksBeforeAnExistingNameIsTaken) {
    QFileDialog &panel = beginSaving("existe.txt");
    QStringList asked;
    QTimer::singleShot(100, [&] {
        QWidget *question = QApplication::activeModalWidget();
        if (!question) return;
        asked = textsOf(*question);
        QTest::keyClick(question, Qt::Key_Escape);
    });
    QTest::keyClick(nameField(panel), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !asked.isEmpty(); }, 3000));
    EXPECT_TRUE(asked.join(u' ').contains(QStringLiteral("reemplazarlo"))) << asked.join(u'|').toStdString();
    expectNoEnglish(asked);
    EXPECT_TRUE(panel.isVisible()) << "answered no: another name can be given";

    QTest::keyClick(nameField(panel), Qt::Key_Escape);
    QTest::qWait(50);
    EXPECT_TRUE(chosen_.empty()) << "cancelled";
    EXPECT_EQ(shownPanel("savePanel"), nullptr);
}

TEST_F(FilePanels, OpenPanelGivesTheChosenFileOrNothing) {
    QWidget window;
    window.show();
    const QFileDialog &savePanel = beginSaving("2024-03-05");
    EXPECT_EQ(savePanel.parentWidget(), &window);
    platform::bringProgramToFront(&window);
    EXPECT_EQ(QApplication::activeWindow(), &savePanel) << "it covers the window";
    const auto open = [&](const std::function<void(QFileDialog &)> &act) {
        QTimer::singleShot(0, [&] {
            auto *panel = shownPanel("openPanel");
            ASSERT_NE(panel, nullptr);
            EXPECT_EQ(panel->windowTitle(), QStringLiteral("Escoge un fichero de escenas"));
            EXPECT_NE(panel->parentWidget(), nullptr);
            EXPECT_TRUE(panel->windowFlags() & Qt::WindowStaysOnTopHint) << "not under the save panel";
            EXPECT_TRUE(QTest::qWaitForWindowActive(panel));
            EXPECT_EQ(panel->directory().absolutePath().toStdString(), path("dir"));
            act(*panel);
        });
        return panels_.runOpenPanel("Escoge un fichero de escenas", path("dir"));
    };

    EXPECT_EQ(open([](QFileDialog &panel) {
                  QTest::keyClicks(nameField(panel), QStringLiteral("escenas.prs"));
                  QTest::keyClick(nameField(panel), Qt::Key_Return);
              }),
              path("dir/escenas.prs"));
    EXPECT_EQ(open([](QFileDialog &panel) { QTest::keyClick(&panel, Qt::Key_Escape); }), std::nullopt);
}

TEST_F(FilePanels, SpeakSpanishAndHideHiddenFiles) {
    QFileDialog &savePanel = beginSaving("2024-03-05");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return textsOf(savePanel).contains(QStringLiteral("existe.txt")); }, 3000));
    const QStringList texts = textsOf(savePanel);
    expectNoEnglish(texts);
    for (const char *expected :
         {"Guardar", "Cancelar", "Nombre:", "Tamaño", "Última modificación", "4,88 KiB"})
        EXPECT_TRUE(texts.contains(QString::fromUtf8(expected))) << expected;
    savePanel.close();

    QStringList openTexts;
    QTimer::singleShot(0, [&] {
        auto *panel = shownPanel("openPanel");
        ASSERT_NE(panel, nullptr);
        static_cast<void>(
            QTest::qWaitFor([&] { return textsOf(*panel).contains(QStringLiteral("existe.txt")); }, 3000));
        openTexts = textsOf(*panel);
        panel->close();
    });
    static_cast<void>(panels_.runOpenPanel("Escoge un fichero de escenas", path("dir")));
    expectNoEnglish(openTexts);
    EXPECT_EQ(QFileDialog::tr("Files"), QStringLiteral("Ficheros")) << "not \"archivos\"";
    EXPECT_TRUE(openTexts.contains(QStringLiteral("escenas.prs"))) << openTexts.join(u'|').toStdString();
    EXPECT_FALSE(openTexts.contains(QStringLiteral(".oculto.prs")));
}

}  // namespace
