#include "platform/qt/help.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <tuple>

#include "platform/services.h"

namespace platform {
namespace {

void say(const std::string &message, const std::string &remedy) {
    std::ignore = services().alerts->run({.messageText = message,
                                          .informativeText = remedy,
                                          .buttons = {"Aceptar"},
                                          .windowTitle = std::nullopt,
                                          .fieldText = std::nullopt});
}

}  // namespace

void openManual(const QString &programs) {
    const QString page = QDir::cleanPath(QDir(programs).filePath(QStringLiteral(ZEL_MANUAL_FROM_PROGRAM)));
    if (!QFileInfo(page).isReadable())
        return say("No se encuentra el manual.",
                   "Tendría que ser el fichero " + page.toStdString() + ". Reinstale el programa.");
    services().webPages->open(QUrl::fromLocalFile(page).toString(QUrl::FullyEncoded).toStdString());
}

void startSelfCheck(const QString &programs) {
    const QString name = QStringLiteral("zelvoria-diagnostico");
    QString program = QStandardPaths::findExecutable(name, {programs});
    if (program.isEmpty()) program = QStandardPaths::findExecutable(name);
    if (program.isEmpty() || !QProcess::startDetached(program, {}))
        say("No se puede comprobar la cámara.",
            "El programa zelvoria-diagnostico falta o no arranca. Reinstálelo.");
}

}  // namespace platform
