#pragma once

#include <memory>
#include <vector>

class AppDelegate;
class QMenu;
class QMenuBar;

namespace app {

/// The menu: its titles, order and shortcuts, and where each command goes. More than one menu bar may show
/// it.
class MainMenu {
 public:
    /// `delegate` must outlive the menu.
    explicit MainMenu(AppDelegate &delegate);
    ~MainMenu();
    MainMenu(const MainMenu &) = delete;
    MainMenu &operator=(const MainMenu &) = delete;

    /// Puts the menus, in their order, into `bar`.
    void fill(QMenuBar &bar) const;

 private:
    QMenu &addMenu(const char *title);

    std::vector<std::unique_ptr<QMenu>> menus_;
};

}  // namespace app
