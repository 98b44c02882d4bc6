#include "app/scene_transfer.h"

#include <QDate>
#include <cstdio>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/services.h"
#include "scenes/scene_tree.h"

namespace app {
namespace {

/// The text behind the last "." of the path's last component; a leading "." begins no extension.
std::string_view pathExtension(std::string_view path) {
    const std::string_view name = path.substr(path.rfind('/') + 1);
    const auto dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

bool confirm(const char *message, const char *information, std::vector<std::string> buttons) {
    return platform::services()
        .alerts
        ->run({.messageText = message,
               .informativeText = information,
               .buttons = std::move(buttons),
               .windowTitle = std::nullopt,
               .fieldText = std::nullopt})
        .isFirstButton();
}

void packStore(const CommandRunner &run, const std::string &chosenPath) {
    std::puts(chosenPath.c_str());
    const auto documents = platform::services().folders->documents();
    if (!documents) return;

    const std::string command = "cd " + *documents + " && zip -r " + chosenPath + ".prs " + PresetsFolder;
    std::puts(command.c_str());
    run(command);
}

}  // namespace

void exportPresets(CommandRunner run) {
    const std::string today = QDate::currentDate().toString(QStringLiteral("yyyy-MM-dd")).toStdString();
    platform::services().panels->beginSavePanel(
        today, platform::services().folders->documents(),
        [run = std::move(run)](const std::string &chosenPath) { packStore(run, chosenPath); });
}

void importPresets(const CommandRunner &run) {
    std::ignore =
        confirm("AVISO IMPORTANTE",
                "El fichero a importar tiene que estar en la carpeta de DESCARGAS para que la importación "
                "se realice correctamente.",
                {"Aceptar"});

    const auto chosen = platform::services().panels->runOpenPanel("Escoge un fichero de escenas",
                                                                  platform::services().folders->downloads());
    if (!chosen || pathExtension(*chosen) != "prs") return;

    const auto documents = platform::services().folders->documents();
    if (!documents) {
        std::puts("Error 349");
        return;
    }
    if (!confirm("Importación", "Atención, las escenas podrían sobreescribirse si tienen el mismo nombre",
                 {"Aceptar", "Cancelar"}))
        return;

    const std::string command = "ditto -v -V -k -x " + *chosen + " " + *documents + "/" + PresetsFolder;
    std::printf("Ejecutando: %s\n", command.c_str());
    run(command);

    // Success is told whatever the command did: its status is not looked at.
    std::ignore = confirm("Importación", "Importación realizada con éxito. Por favor REINICIE la aplicación.",
                          {"Aceptar"});
}

}  // namespace app
