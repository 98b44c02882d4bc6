#include "app/app_delegate.h"

#include <cstdio>
#include <tuple>

#include "app/main_window.h"
#include "app/scene_transfer.h"
#include "platform/services.h"
#include "product/product.h"
#include "ptz/camera_motion.h"
#include "ui/content_view.h"

void AppDelegate::applicationDidFinishLaunching() {
    myContentView = std::make_unique<ContentView>();

    window = std::make_unique<app::MainWindow>(*this);
    window->centre();
    window->restoreFrame();
    window->setContent(*myContentView);
    window->makeKeyAndOrderFront();
    // Only now: the title belongs to a window that is on the screen.
    window->setWindowTitle(QString::fromUtf8(product::kApplicationName));
}

void AppDelegate::ImportPresets() {
    app::importPresets([this](const std::string &commandLine) { return shell({commandLine}); });
}

void AppDelegate::ExportPresets() {
    app::exportPresets([this](const std::string &commandLine) { return shell({commandLine}); });
}

void AppDelegate::PaginaZEL() {
    std::puts("Menú!");
    platform::services().webPages->open(product::kRemoteTeachingPage);
}

void AppDelegate::AcercaDe() {
    std::ignore = platform::services().alerts->run(
        {.messageText = product::kMakerSentence,
         .informativeText = std::string("Para mas información, contacte con ") + product::kContactEmail,
         .buttons = {"Aceptar"},
         .windowTitle = std::string("Versión ") + product::kVersion,
         .fieldText = std::nullopt});
}

void AppDelegate::PaginaMultimodal() {
    platform::services().webPages->open(product::kBlendedLearningPage);
}

void AppDelegate::Mover_Izquierda_Delegate() {
    if (myContentView) Mover_Izquierda();
}

void AppDelegate::Mover_Derecha_Delegate() {
    if (myContentView) Mover_Derecha();
}

void AppDelegate::Mover_Arriba_Delegate() {
    if (myContentView) Mover_Arriba();
}

void AppDelegate::Mover_Abajo_Delegate() {
    if (myContentView) Mover_Abajo();
}

void AppDelegate::Mover_ZoomIn_Delegate() {
    if (myContentView) myContentView->Mover_ZoomIn();
}

void AppDelegate::Mover_ZoomOut_Delegate() {
    if (myContentView) myContentView->Mover_ZoomOut();
}

void AppDelegate::applicationWillTerminate() {}

AppDelegate::AppDelegate() = default;

AppDelegate::~AppDelegate() {
    window.reset();  // it draws the view, and so goes first
}

std::int32_t AppDelegate::shell(std::initializer_list<std::string> arguments) {
    return platform::services().shell->run(arguments);
}
