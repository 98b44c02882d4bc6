#include <QApplication>
#include <QTimer>
#include <memory>

#include "app/app_delegate.h"
#include "app/main_window.h"
#include "platform/qt/desktop.h"
#include "platform/qt/single_instance.h"
#include "platform/qt/window_order.h"
#include "product/product.h"
#include "usb/system_registry.h"
#include "uvc/uvc_controller.h"

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    platform::startDesktop(application, product::kApplicationName);
    const auto instance = platform::SingleInstance::claim(QCoreApplication::applicationName());
    if (!instance) return 0;
    UVCController::useDeviceRegistry(usb::makeSystemRegistry());

    AppDelegate delegate;
    QObject::connect(instance.get(), &platform::SingleInstance::startedAgain, [&delegate] {
        platform::bringProgramToFront(delegate.mainWindow() ? delegate.mainWindow()->onScreen() : nullptr);
    });
    QObject::connect(&application, &QApplication::aboutToQuit, [&] { delegate.applicationWillTerminate(); });
    QTimer::singleShot(0, [&] { delegate.applicationDidFinishLaunching(); });
    return QApplication::exec();
}
