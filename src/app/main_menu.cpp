#include "app/main_menu.h"

#include <QApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "app/app_delegate.h"
#include "platform/qt/help.h"

namespace app {
namespace {

using Command = void (AppDelegate::*)();

struct Entry {
    const char *title;  ///< null: a separator
    const char *objectName;
    Command command;
    QList<QKeySequence> shortcuts;
};

void fillMenu(QMenu &menu, AppDelegate &delegate, const std::vector<Entry> &entries) {
    for (const Entry &entry : entries) {
        if (!entry.title) {
            menu.addSeparator();
            continue;
        }
        QAction *action = menu.addAction(QString::fromUtf8(entry.title));
        action->setObjectName(QLatin1String(entry.objectName));
        action->setShortcuts(entry.shortcuts);
        QObject::connect(action, &QAction::triggered, &menu,
                         [&delegate, command = entry.command] { (delegate.*command)(); });
    }
}

/// An entry of the platform's: the delegate has no part in it.
void addOwn(QMenu &menu, const char *title, const char *objectName, const QList<QKeySequence> &shortcuts,
            void (*run)()) {
    QAction *action = menu.addAction(QString::fromUtf8(title));
    action->setObjectName(QLatin1String(objectName));
    action->setShortcuts(shortcuts);
    QObject::connect(action, &QAction::triggered, &menu, run);
}

}  // namespace

MainMenu::MainMenu(AppDelegate &delegate) {
    const Entry separator{nullptr, nullptr, nullptr, {}};

    QMenu &file = addMenu("&Archivo");
    fillMenu(file, delegate,
             {{"&Importar escenas…", "ImportPresets", &AppDelegate::ImportPresets, {Qt::CTRL | Qt::Key_I}},
              {"&Exportar escenas…", "ExportPresets", &AppDelegate::ExportPresets, {Qt::CTRL | Qt::Key_E}},
              separator});
    QList<QKeySequence> quitKeys = QKeySequence::keyBindings(QKeySequence::Quit);
    // Ours only where the platform has none: a key that is listed twice is ambiguous and does nothing.
    if (quitKeys.isEmpty()) quitKeys.append(QKeySequence(Qt::CTRL | Qt::Key_Q));
    addOwn(file, "&Salir", "Quit", quitKeys, [] { QApplication::quit(); });

    fillMenu(addMenu("&Cámara"), delegate,
             {{"Mover a la &izquierda",
               "Mover_Izquierda_Delegate",
               &AppDelegate::Mover_Izquierda_Delegate,
               {Qt::CTRL | Qt::Key_Left}},
              {"Mover a la &derecha",
               "Mover_Derecha_Delegate",
               &AppDelegate::Mover_Derecha_Delegate,
               {Qt::CTRL | Qt::Key_Right}},
              {"Mover hacia a&rriba",
               "Mover_Arriba_Delegate",
               &AppDelegate::Mover_Arriba_Delegate,
               {Qt::CTRL | Qt::Key_Up}},
              {"Mover hacia a&bajo",
               "Mover_Abajo_Delegate",
               &AppDelegate::Mover_Abajo_Delegate,
               {Qt::CTRL | Qt::Key_Down}},
              separator,
              {"&Acercar",
               "Mover_ZoomIn_Delegate",
               &AppDelegate::Mover_ZoomIn_Delegate,
               {Qt::CTRL | Qt::Key_Plus}},
              {"A&lejar",
               "Mover_ZoomOut_Delegate",
               &AppDelegate::Mover_ZoomOut_Delegate,
               {Qt::CTRL | Qt::Key_Minus}}});

    QMenu &help = addMenu("A&yuda");
    addOwn(help, "Ma&nual", "Manual", {Qt::Key_F1}, [] { platform::openManual(); });
    addOwn(help, "¿&Por qué no se mueve la cámara?", "SelfCheck", {}, [] { platform::startSelfCheck(); });
    fillMenu(help, delegate,
             {separator,
              {"&Soporte a la docencia remota", "PaginaZEL", &AppDelegate::PaginaZEL, {}},
              {"Docencia &multimodal", "PaginaMultimodal", &AppDelegate::PaginaMultimodal, {}},
              separator,
              {"&Acerca de…", "AcercaDe", &AppDelegate::AcercaDe, {}}});
}

MainMenu::~MainMenu() = default;

void MainMenu::fill(QMenuBar &bar) const {
    for (const auto &menu : menus_) bar.addMenu(menu.get());
}

QMenu &MainMenu::addMenu(const char *title) {
    menus_.push_back(std::make_unique<QMenu>(QString::fromUtf8(title)));
    return *menus_.back();
}

}  // namespace app
