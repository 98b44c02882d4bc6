#include <QApplication>
#include <cstdint>
#include <memory>

#include "app/product.h"
#include "platform/qt/desktop.h"
#include "selfcheck/check_window.h"
#include "usb/linux/interface_report.h"
#include "usb/linux/linux_registry.h"

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    platform::startDesktop(application, product::kApplicationName);
    QApplication::setQuitOnLastWindowClosed(true);

    const auto cameras = std::make_shared<usb::LinuxRegistry>();
    selfcheck::CheckWindow window(
        cameras, [cameras](std::uint32_t locationId) { return usb::inspectInterface(*cameras, locationId); },
        QString::fromUtf8(product::kVersion));
    window.show();
    return QApplication::exec();
}
