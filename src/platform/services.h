#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The outside world behind small interfaces, so that a test, or the simulated edition, can stand in for any
/// of it. All text is UTF-8. Everything runs on the user-interface thread and nothing throws.
namespace platform {

/// One application-modal alert of the warning style.
struct Alert {
    std::string messageText;
    std::string informativeText;
    std::vector<std::string> buttons;        ///< the first is the default button; "Cancelar" answers Escape
    std::optional<std::string> windowTitle;  ///< absent: the application's name
    std::optional<std::string> fieldText;    ///< present: the alert carries a text field that starts with it
};

struct AlertAnswer {
    std::size_t button = 0;  ///< index into Alert::buttons
    std::string fieldText;   ///< what the field held, untrimmed; empty without a field

    [[nodiscard]] bool isFirstButton() const { return button == 0; }
};

class Alerts {
 public:
    virtual ~Alerts() = default;
    /// Blocks until the user has answered. Escape and closing the window answer "Cancelar" where there is
    /// such a button, and the only button where there is one.
    [[nodiscard]] virtual AlertAnswer run(const Alert &alert) = 0;
};

class UserFolders {
 public:
    virtual ~UserFolders() = default;
    /// Absolute path of the user's Documents folder, without a trailing "/"; it need not exist. Absent when
    /// the platform knows none.
    [[nodiscard]] virtual std::optional<std::string> documents() const = 0;
    /// The same for Downloads.
    [[nodiscard]] virtual std::optional<std::string> downloads() const = 0;
};

class FilePanels {
 public:
    virtual ~FilePanels() = default;
    /// Shows a save panel that starts in `folder`, where that is given, with `name` preset in its name field,
    /// and returns at once. `chosen` is called with the path that the user chose, and not at all when the
    /// panel was cancelled. While one is open, it comes to the front instead, as the user left it.
    virtual void beginSavePanel(const std::string &name, const std::optional<std::string> &folder,
                                std::function<void(std::string)> chosen) = 0;
    /// Runs a panel that opens one existing file, starting in `folder` where that is given. Nothing when it
    /// was cancelled.
    [[nodiscard]] virtual std::optional<std::string> runOpenPanel(
        const std::string &title, const std::optional<std::string> &folder) = 0;
};

class CommandShell {
 public:
    virtual ~CommandShell() = default;
    /// Runs /bin/bash -c with `arguments` behind it, the standard streams inherited, and waits until it ends,
    /// however long that takes; the window does not react meanwhile. Its exit status, or the signal's number.
    virtual std::int32_t run(const std::vector<std::string> &arguments) = 0;
};

class WebPages {
 public:
    virtual ~WebPages() = default;
    /// Asks for the page in the user's browser; whether it opens is not known.
    virtual void open(const std::string &address) = 0;
};

/// What the program uses of the outside world. All members are set while the program runs.
struct Services {
    std::shared_ptr<Alerts> alerts;
    std::shared_ptr<UserFolders> folders;
    std::shared_ptr<FilePanels> panels;
    std::shared_ptr<CommandShell> shell;
    std::shared_ptr<WebPages> webPages;
};

/// Replaces the services of the process. Called by main (and by tests) before anything asks for them.
void installServices(Services services);

/// The installed services.
[[nodiscard]] const Services &services();

}  // namespace platform
