#pragma once

#include <QWidget>

class QMenuBar;

namespace app {

class MainMenu;

/// The menu bar on its own, shown when the main window has been closed, so that nobody is left with a program
/// they cannot reach. Closing it quits.
class MenuStrip : public QWidget {
 public:
    explicit MenuStrip(const MainMenu &menu);

    /// Shows the strip, with its top left corner at `position` where the system lets programs place windows.
    void showAt(QPoint position);

 protected:
    void closeEvent(QCloseEvent *event) override;

 private:
    QMenuBar *bar_;
};

}  // namespace app
