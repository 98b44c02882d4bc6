#pragma once

#include <QMainWindow>
#include <memory>

#include "app/main_menu.h"
#include "app/menu_strip.h"
#include "platform/qt/window_frame.h"

class AppDelegate;
class ContentView;

namespace app {

/// The one window. Its content is 600 to 800 wide and exactly 200 high; the menu bar comes on top of that.
/// Closing it does not end the program: the menu bar then stays on the screen as a slim window of its own.
class MainWindow : public QMainWindow {
 public:
    /// `delegate` receives the menu's commands and must outlive the window.
    explicit MainWindow(AppDelegate &delegate);

    void centre();
    /// Takes the size of the last use. Takes its place too, if the system lets programs place windows and the
    /// place is on a screen.
    void restoreFrame();
    /// Shows `view`, which must outlive the window, as the window's content.
    void setContent(ContentView &view);
    void makeKeyAndOrderFront();
    /// What the user sees: this window or, once it has been closed, the strip.
    [[nodiscard]] QWidget *onScreen();

 protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    /// Watches the application for the request to quit, which closes all windows on its way.
    bool eventFilter(QObject *watched, QEvent *event) override;

 private:
    void limitSize();

    MainMenu menu_;
    std::unique_ptr<MenuStrip> strip_;  ///< once the window has been closed
    platform::WindowFrame frame_;
    bool quitting_ = false;
};

}  // namespace app
