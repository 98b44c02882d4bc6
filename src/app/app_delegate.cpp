#include "app/app_delegate.h"

#include <cstdio>
#include <tuple>

#include "app/main_window.h"
#include "app/product.h"
#include "app/scene_transfer.h"
#include "platform/services.h"
#include "ptz/camera_motion.h"
#include "ui/content_view.h"

AppDelegate::AppDelegate() = default;
AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    myContentView = std::make_unique<ContentView>();

    window = std::make_unique<MainWindow>(*this);
    window->centre();
    window->restoreFrame();
    window->setContent(*myContentView);
    window->makeKeyAndOrderFront();
    // Only now: the title belongs to a window that is on the screen.
    window->setWindowTitle(QString::fromUtf8(product::kApplicationName));
}

void AppDelegate::applicationWillTerminate() {}

void AppDelegate::ImportPresets() {
    importPresets();
}

void AppDelegate::ExportPresets() {
    exportPresets();
}

void AppDelegate::PaginaZEL() {
    std::puts("Menú!");
    platform::services().webPages->open(product::kRemoteTeachingPage);
}

void AppDelegate::PaginaMultimodal() {
    platform::services().webPages->open(product::kBlendedLearningPage);
}

void AppDelegate::AcercaDe() {
    std::ignore = platform::services().alerts->run(
        {.messageText = product::kMakerSentence,
         .informativeText = std::string("Para mas información, contacte con ") + product::kContactEmail,
         .buttons = {"Aceptar"},
         .windowTitle = std::string("Versión ") + product::kVersion,
         .fieldText = std::nullopt});
}

void AppDelegate::Mover_Izquierda_Delegate() {
    moveBy(-1, 0);
}

void AppDelegate::Mover_Derecha_Delegate() {
    moveBy(1, 0);
}

void AppDelegate::Mover_Arriba_Delegate() {
    moveBy(0, 1);
}

void AppDelegate::Mover_Abajo_Delegate() {
    moveBy(0, -1);
}

void AppDelegate::Mover_ZoomIn_Delegate() {
    zoomBy(10);
}

void AppDelegate::Mover_ZoomOut_Delegate() {
    zoomBy(-10);
}

void AppDelegate::moveBy(std::int64_t panStep, std::int64_t tiltStep) {
    if (myContentView) moveCameraBy(panStep, tiltStep);
}

void AppDelegate::zoomBy(std::int64_t step) {
    if (myContentView) myContentView->ZoomMove(step);
}
