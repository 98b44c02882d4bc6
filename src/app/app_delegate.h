#pragma once

#include <initializer_list>
#include <memory>
#include <string>

class ContentView;

namespace app {
class MainWindow;
}

/// Receives the platform's notices and the menu's commands. Builds the view and the one window when launching
/// has finished; both then stay for the life of the process. Lives on the user-interface thread.
class AppDelegate {
 public:
    /// Loads the store, sends the camera to the first scene, and shows the window. Called once.
    void applicationDidFinishLaunching();

    void ImportPresets();
    void ExportPresets();
    void PaginaZEL();
    void AcercaDe();
    void PaginaMultimodal();

    /// One display unit (pan, tilt) or 10 raw units (zoom) at a time: finer than the window's buttons.
    /// Nothing happens before launching has finished, and nothing is clamped: the camera limits the movement.
    void Mover_Izquierda_Delegate();
    void Mover_Derecha_Delegate();
    void Mover_Arriba_Delegate();
    void Mover_Abajo_Delegate();
    void Mover_ZoomIn_Delegate();
    void Mover_ZoomOut_Delegate();

    /// Does nothing: every change is on disk already, and the camera stays where it is.
    void applicationWillTerminate();

    AppDelegate();
    ~AppDelegate();
    AppDelegate(const AppDelegate &) = delete;
    AppDelegate &operator=(const AppDelegate &) = delete;

    /// The main window; null until launching has finished.
    [[nodiscard]] app::MainWindow *mainWindow() const { return window.get(); }

 private:
    std::unique_ptr<app::MainWindow> window;
    std::unique_ptr<ContentView> myContentView;

    /// Runs `arguments` through the system's shell (the first is the script) and blocks until it has ended;
    /// its exit status.
    std::int32_t shell(std::initializer_list<std::string> arguments);
};
