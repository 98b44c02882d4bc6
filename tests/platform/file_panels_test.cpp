// The real file panels, used the way a person does, in a folder of the test's
// own.
#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "platform/qt/qt_file_panels.h"
#include "platform/qt/window_order.h"
#include "surroundings.h"

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
    for (const QObject *part : panel.findChildren<QObject *>()) {
        for (const char *property :
             {"text", "currentText", "toolTip", "accessibleName", "accessibleDescription"})
            texts << part->property(property).toString().remove(u'&');
    }
    for (const auto *view : panel.findChildren<QTreeView *>()) {
        const QAbstractItemModel &model = *view->model();
        for (int column = 0; column < model.columnCount(); ++column) {
            texts << model.headerData(column, Qt::Horizontal).toString();
            for (int row = 0; row < model.rowCount(view->rootIndex()); ++row)
                texts << model.index(row, column, view->rootIndex()).data().toString();
        }
    }
    return texts;
}

/// Words of Qt's English panels that Spanish does not have.
void expectNoEnglish(const QStringList &texts) {
    static const QRegularExpression english(
        QStringLiteral("\\b(Look "
                       "in|File|Files|Folder|Directory|Name|Size|Type|Kind|Date|Modified|"
                       "Computer|Save|Open|"
                       "Cancel|Choose|All|Back|Forward|Parent|Create|New|List|Detail|View|"
                       "Show|Hidden|Delete|Rename|"
                       "Yes|Sidebar|Unknown|Drive|already exists|not found|AM|PM)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    EXPECT_TRUE(texts.filter(english).isEmpty()) << texts.filter(english).join(u'|').toStdString();
}

class FilePanels : public FolderTest {
 protected:
    void SetUp() override {
        FolderTest::SetUp();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QString::fromStdString(path()));
        write("dir/Carpeta/a", "");
        write("dir/existe.txt", std::string(5000, 'x'));
        write("dir/escenas.prs", "x");
        write("dir/.oculto.prs", "x");
        QFile file(QString::fromStdString(path("dir/existe.txt")));
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.setFileTime(QDateTime({2024, 3, 5}, {13, 7}), QFileDevice::FileModificationTime);
    }

    QFileDialog &beginSaving(const std::string &name) {
        panels_.beginSavePanel(name, path("dir"), [this](const std::string &file) {
            chosen_.push_back(file);
            panelStillShown_ = shownPanel("savePanel") != nullptr;
        });
        QFileDialog *panel = shownPanel("savePanel");
        if (!panel) throw std::runtime_error("no save panel");
        static_cast<void>(QTest::qWaitForWindowActive(panel));
        return *panel;
    }

    /// What the open panel gives when `act` has been done with it.
    std::optional<std::string> open(const std::function<void(QFileDialog &)> &act) {
        QTimer::singleShot(0, [&] {
            auto *panel = shownPanel("openPanel");
            ASSERT_NE(panel, nullptr);
            EXPECT_TRUE(QTest::qWaitForWindowActive(panel));
            act(*panel);
        });
        return panels_.runOpenPanel("Escoge un fichero de escenas", path("dir"));
    }

    platform::QtFilePanels panels_;
    std::vector<std::string> chosen_;
    bool panelStillShown_ = false;
};

TEST_F(FilePanels, SavePanelReturnsAtOnceAsksBeforeAnExistingNameIsTakenAndTellsTheNameLater) {
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
    EXPECT_FALSE(asked.filter(QStringLiteral("reemplazarlo")).isEmpty()) << asked.join(u'|').toStdString();
    expectNoEnglish(asked);

    EXPECT_EQ(&beginSaving("2024-03-06"), &panel) << "asked for again, the open one comes to the front";
    nameField(panel)->selectAll();
    QTest::keyClicks(nameField(panel), QStringLiteral("copia"));
    EXPECT_TRUE(chosen_.empty());
    QTest::keyClick(nameField(panel), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !chosen_.empty(); }, 3000));
    EXPECT_EQ(chosen_, std::vector{path("dir/copia")}) << "no extension is added";
    EXPECT_FALSE(panelStillShown_) << "the panel is gone before the long work begins";
}

TEST_F(FilePanels, OpenPanelGivesTheChosenFileOrNothingAboveTheSavePanel) {
    QWidget window;
    window.show();
    QFileDialog &savePanel = beginSaving("2024-03-05");
    EXPECT_FALSE(savePanel.isModal());
    EXPECT_EQ(savePanel.parentWidget(), &window);
    platform::bringProgramToFront(&window);
    EXPECT_EQ(QApplication::activeWindow(), &savePanel) << "it covers the window";

    EXPECT_EQ(open([](QFileDialog &panel) {
                  EXPECT_NE(panel.parentWidget(), nullptr);
                  EXPECT_TRUE(panel.windowFlags() & Qt::WindowStaysOnTopHint) << "not under the save panel";
                  QTest::keyClicks(nameField(panel), QStringLiteral("escenas.prs"));
                  QTest::keyClick(nameField(panel), Qt::Key_Return);
              }),
              path("dir/escenas.prs"));
    EXPECT_EQ(open([](QFileDialog &panel) { QTest::keyClick(&panel, Qt::Key_Escape); }), std::nullopt);
    QTest::keyClick(&savePanel, Qt::Key_Escape);
    QTest::qWait(50);
    EXPECT_EQ(shownPanel("savePanel"), nullptr);
    EXPECT_TRUE(chosen_.empty()) << "cancelled";
}

TEST_F(FilePanels, SpeakSpanishAndHideHiddenFiles) {
    const auto look = [](const char *title, const char *accept) {
        return [=](QFileDialog &panel) {
            EXPECT_TRUE(QTest::qWaitFor([&] { return textsOf(panel).contains(u"existe.txt"); }, 3000));
            const QStringList texts = textsOf(panel);
            expectNoEnglish(texts);
            EXPECT_FALSE(texts.contains(u".oculto.prs"));
            for (const char *expected : {title, accept, "Cancelar", "Carpeta:", "Nombre:", "Tipo:", "Tamaño",
                                         "Última modificación", "4,88 KiB", "5/3/24 13:07"})
                EXPECT_TRUE(texts.contains(QString::fromUtf8(expected))) << expected;
            panel.close();
        };
    };
    look("Guardar escenas", "Guardar")(beginSaving("2024-03-05"));
    static_cast<void>(open(look("Escoge un fichero de escenas", "Abrir")));
    EXPECT_EQ(QFileDialog::tr("Files"), QStringLiteral("Ficheros")) << "not \"archivos\"";
}

}  // namespace
