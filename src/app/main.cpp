#include <QApplication>
#include <QTimer>
#include <memory>
#include <optional>
#include <vector>

#include "app/app_delegate.h"
#include "app/main_window.h"
#include "platform/qt/desktop.h"
#include "platform/qt/single_instance.h"
#include "platform/qt/window_order.h"
#include "product/product.h"
#include "usb/system_registry.h"
#include "uvc/uvc_controller.h"

namespace {

/// The system's devices, looked for when they are asked for first: a window with nothing to recall does not
/// wait for them.
class DevicesInTime : public usb::DeviceRegistry {
 public:
    [[nodiscard]] std::optional<std::vector<std::shared_ptr<const usb::Device>>> devices() const override {
        if (!registry_) registry_ = usb::makeSystemRegistry();
        return registry_->devices();
    }

 private:
    mutable std::unique_ptr<usb::DeviceRegistry> registry_;
};

}  // namespace

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    platform::startDesktop(application, product::kApplicationName);
    const auto instance = platform::SingleInstance::claim(QCoreApplication::applicationName());
    if (!instance) return 0;
    UVCController::useDeviceRegistry(std::make_shared<DevicesInTime>());

    AppDelegate delegate;
    QObject::connect(instance.get(), &platform::SingleInstance::startedAgain, [&delegate] {
        platform::bringProgramToFront(delegate.mainWindow() ? delegate.mainWindow()->onScreen() : nullptr);
    });
    QObject::connect(&application, &QApplication::aboutToQuit, [&] { delegate.applicationWillTerminate(); });
    QTimer::singleShot(0, [&] { delegate.applicationDidFinishLaunching(); });
    return QApplication::exec();
}
