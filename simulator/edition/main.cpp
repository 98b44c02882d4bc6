#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>
#include <cstdio>
#include <memory>

#include "app/app_delegate.h"
#include "app/main_window.h"
#include "platform/qt/desktop.h"
#include "platform/qt/single_instance.h"
#include "platform/qt/window_order.h"
#include "platform/services.h"
#include "product/product.h"
#include "simulator/camera_model.h"
#include "simulator/edition/preview_placement.h"
#include "simulator/edition/sample_store.h"
#include "simulator/preview/preview_window.h"
#include "simulator/simulated_registry.h"
#include "uvc/uvc_controller.h"

namespace {

/// Documents and Downloads inside one folder, so that nothing of the user's is touched.
class FoldersInside : public platform::UserFolders {
 public:
    explicit FoldersInside(const QDir &base) : base_(base) {}

    [[nodiscard]] std::optional<std::string> documents() const override { return inside(u"Documentos"); }
    [[nodiscard]] std::optional<std::string> downloads() const override { return inside(u"Descargas"); }

 private:
    [[nodiscard]] std::string inside(QStringView name) const {
        base_.mkpath(name.toString());
        return base_.absoluteFilePath(name.toString()).toStdString();
    }

    QDir base_;
};

/// One copy per folder: each has a store of its own. `folder` must exist.
QString nameOfCopyIn(const QDir &folder) {
    const QByteArray place = QFile::encodeName(folder.canonicalPath());
    return QCoreApplication::applicationName() + u'-' +
           QString::fromLatin1(QCryptographicHash::hash(place, QCryptographicHash::Sha1).toHex().left(16));
}

}  // namespace

/// zelvoria-camara-simulada [FOLDER]: FOLDER takes the store and all that the program remembers. Status 1 if
/// it cannot be made.
int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    const QString fallback = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                             QStringLiteral("/zelvoria-camara-simulada");
    const QDir folder(QDir(argc > 1 ? QString::fromLocal8Bit(argv[1]) : fallback).absolutePath());
    if (!folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "No se puede crear la carpeta %s\n", qPrintable(folder.path()));
        return 1;
    }
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.absolutePath());
    platform::startDesktop(application, product::kApplicationName);
    const auto instance = platform::SingleInstance::claim(nameOfCopyIn(folder));
    if (!instance) return 0;
    auto services = platform::services();
    services.folders = std::make_shared<FoldersInside>(folder);
    platform::installServices(services);

    const auto camera = std::make_shared<simulator::CameraModel>();
    const auto bus = std::make_shared<simulator::SimulatedRegistry>();
    bus->plug(camera, 1, {1});
    UVCController::useDeviceRegistry(bus);
    simulator::writeSampleStore();

    AppDelegate delegate;
    QObject::connect(instance.get(), &platform::SingleInstance::startedAgain, [&delegate] {
        platform::bringProgramToFront(delegate.mainWindow() ? delegate.mainWindow()->onScreen() : nullptr);
    });
    simulator::PreviewWindow preview(camera);
    QObject::connect(&application, &QApplication::aboutToQuit, [&] { delegate.applicationWillTerminate(); });
    // The preview first, so that it never hides the program: what is shown last lies on top.
    simulator::showBelowTheNext(preview, [&] {
        delegate.applicationDidFinishLaunching();
        QTimer::singleShot(200, [&] { simulator::placeBeside(preview, *delegate.mainWindow()); });
    });
    return QApplication::exec();
}
