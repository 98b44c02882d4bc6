#include "platform/qt/desktop.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <QTimer>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>

#include "platform/command_shell.h"
#include "platform/qt/qt_alerts.h"
#include "platform/qt/qt_file_panels.h"
#include "platform/qt/qt_user_folders.h"
#include "platform/qt/qt_web_pages.h"
#include "platform/qt/spanish.h"
#include "platform/services.h"

// Outside every namespace, as the macro demands.
static void initAppIcon() {
    Q_INIT_RESOURCE(app_icon);
}

namespace platform {
namespace {

/// The first window appears without waiting for its icon.
constexpr std::chrono::milliseconds kIconDelay{200};

/// Drawn here: Qt would load plugins for icons and for all kinds of pictures.
void showAppIcon() {
    initAppIcon();
    QSvgRenderer picture(QStringLiteral(":/AppIcon.svg"));
    QIcon icon;
    for (const int size : {16, 32, 64, 128}) {
        QPixmap drawn(size, size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        picture.render(&painter);
        icon.addPixmap(drawn);
    }
    QApplication::setWindowIcon(icon);
}

/// Where the package keeps its own commands.
std::string toolsFolder() {
    const QDir programs(QCoreApplication::applicationDirPath());
    return QDir::cleanPath(programs.filePath(QStringLiteral(ZEL_COMMANDS_FROM_PROGRAM))).toStdString();
}

}  // namespace

void startDesktop(QApplication &application, const char *title) {
    QCoreApplication::setOrganizationName(QStringLiteral("Zelvoria"));
    QCoreApplication::setApplicationName(
        QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName());
    // No display name: X11 windows would carry it behind their own titles.
    QGuiApplication::setDesktopFileName(QCoreApplication::applicationName());
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QTimer::singleShot(kIconDelay, &application, &showAppIcon);
    speakSpanish(application);
    // Whoever reads the standard output may go away. The next printed line must not end the program.
    std::signal(SIGPIPE, SIG_IGN);
    // Diagnostic lines are written at once, into a file too, and so in order with those of the children.
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);

    installServices({.alerts = std::make_shared<QtAlerts>(title),
                     .folders = std::make_shared<QtUserFolders>(),
                     .panels = std::make_shared<QtFilePanels>(),
                     .shell = std::make_shared<BashShell>(toolsFolder()),
                     .webPages = std::make_shared<QtWebPages>()});
}

}  // namespace platform
