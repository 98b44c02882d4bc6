#include <QApplication>
#include <cstdint>
#include <memory>

#include "platform/qt/desktop.h"
#include "product/product.h"
#include "selfcheck/check_window.h"
#include "usb/system_registry.h"

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    platform::startDesktop(application, product::kApplicationName);
    QApplication::setQuitOnLastWindowClosed(true);

    const std::shared_ptr<usb::SystemRegistry> cameras = usb::makeSystemRegistry();
    selfcheck::CheckWindow window(
        cameras, [cameras](std::uint32_t locationId) { return cameras->inspectInterface(locationId); },
        QString::fromUtf8(product::kVersion));
    window.show();
    return QApplication::exec();
}
