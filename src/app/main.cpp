#include <QApplication>
#include <QTimer>
#include <memory>

#include "app/app_delegate.h"
#include "app/product.h"
#include "platform/qt/desktop.h"
#include "usb/linux/linux_registry.h"
#include "uvc/uvc_controller.h"

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    platform::startDesktop(application, product::kApplicationName);
    UVCController::useDeviceRegistry(std::make_shared<usb::LinuxRegistry>());

    AppDelegate delegate;
    QObject::connect(&application, &QApplication::aboutToQuit, [&] { delegate.applicationWillTerminate(); });
    QTimer::singleShot(0, [&] { delegate.applicationDidFinishLaunching(); });
    return QApplication::exec();
}
