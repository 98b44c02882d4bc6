#include "platform/qt/qt_file_panels.h"

#include <QApplication>
#include <QFileDialog>
#include <QHeaderView>
#include <QSplitter>
#include <QTreeView>
#include <utility>

#include "platform/qt/spanish_file_model.h"
#include "platform/qt/window_order.h"

namespace platform {
namespace {

constexpr QSize kPanelSize{760, 480};

// Sidebar and list: "Equipo" does not fit the width that Qt gives it.
const QList<int> kSplit{150, 610};

/// Columns as wide as what they hold; Qt's own widths clip the Spanish headings.
void fitColumns(QFileDialog &panel) {
    const auto *list = panel.findChild<QTreeView *>(QStringLiteral("treeView"));
    if (!list) return;
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
}

void prepare(QFileDialog &panel, const QString &acceptLabel) {
    panel.setOption(QFileDialog::DontUseNativeDialog);
    panel.setProxyModel(new SpanishFileModel(&panel));
    panel.setLabelText(QFileDialog::LookIn, QStringLiteral("Carpeta:"));
    panel.setLabelText(QFileDialog::FileName, QStringLiteral("Nombre:"));
    panel.setLabelText(QFileDialog::FileType, QStringLiteral("Tipo:"));
    panel.setLabelText(QFileDialog::Accept, acceptLabel);
    panel.setLabelText(QFileDialog::Reject, QStringLiteral("Cancelar"));
    fitColumns(panel);
    if (auto *split = panel.findChild<QSplitter *>(QStringLiteral("splitter"))) split->setSizes(kSplit);
    panel.resize(kPanelSize);
    panel.setAttribute(Qt::WA_QuitOnClose, false);
    // Both panels: under the save panel a modal one would freeze the program for no visible reason.
    panel.setWindowFlag(Qt::WindowStaysOnTopHint);
}

}  // namespace

void QtFilePanels::beginSavePanel(const std::string &name, const std::optional<std::string> &folder,
                                  std::function<void(std::string)> chosen) {
    if (savePanel_) return bringToFront(*savePanel_);

    // Owns itself: it goes when it is closed, at the latest when the application quits.
    auto *panel = new QFileDialog(windowInFront());
    savePanel_ = panel;
    panel->setObjectName(QStringLiteral("savePanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setWindowTitle(QStringLiteral("Guardar escenas"));
    prepare(*panel, QStringLiteral("Guardar"));
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setFileMode(QFileDialog::AnyFile);
    if (folder) panel->setDirectory(QString::fromStdString(*folder));
    panel->selectFile(QString::fromStdString(name));

    QObject::connect(qApp, &QCoreApplication::aboutToQuit, panel, &QWidget::close);
    QObject::connect(
        panel, &QFileDialog::fileSelected, qApp,
        [chosen = std::move(chosen)](const QString &path) {
            if (chosen) chosen(path.toStdString());
        },
        Qt::QueuedConnection);
    bringToFront(*panel);
}

std::optional<std::string> QtFilePanels::runOpenPanel(const std::string &title,
                                                      const std::optional<std::string> &folder) {
    QFileDialog panel(windowInFront());
    panel.setObjectName(QStringLiteral("openPanel"));
    panel.setWindowTitle(QString::fromStdString(title));
    panel.setWindowModality(Qt::ApplicationModal);
    panel.setOption(QFileDialog::ReadOnly);  // a panel that only opens files neither renames nor deletes them
    prepare(panel, QStringLiteral("Abrir"));
    panel.setAcceptMode(QFileDialog::AcceptOpen);
    panel.setFileMode(QFileDialog::ExistingFile);
    if (folder) panel.setDirectory(QString::fromStdString(*folder));

    runInFront(panel);
    if (panel.result() != QDialog::Accepted || panel.selectedFiles().isEmpty()) return std::nullopt;
    return panel.selectedFiles().constFirst().toStdString();
}

}  // namespace platform
