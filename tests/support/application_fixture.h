#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QSettings>
#include <QTest>
#include <optional>

#include "app/app_delegate.h"
#include "app/main_window.h"
#include "platform/command_shell.h"
#include "support/bench_test.h"
#include "support/window_user.h"

using support::scene;

/// The whole application on a simulated camera, a temporary Documents folder and prepared answers. Tests
/// click what a person would, then ask the camera where it points and the disk what it holds.
class ApplicationTest : public support::BenchTest, protected support::WindowUser {
 protected:
    /// File panels that answer at once with what was prepared; cancelled where nothing was.
    struct AnsweredPanels : platform::FilePanels {
        void beginSavePanel(const std::string &name, const std::optional<std::string> &folder,
                            std::function<void(std::string)> chosen) override {
            said = name;
            startFolder = folder;
            if (savePath) chosen(*savePath);
        }
        std::optional<std::string> runOpenPanel(const std::string &title,
                                                const std::optional<std::string> &folder) override {
            said = title;
            startFolder = folder;
            return openPath;
        }
        std::string said;  ///< the name in the field, or the title
        std::optional<std::string> startFolder;
        std::optional<std::string> savePath;
        std::optional<std::string> openPath;
    };

    struct RecordedPages : platform::WebPages {
        void open(const std::string &address) override { opened.push_back(address); }
        std::vector<std::string> opened;
    };

    ApplicationTest() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString((documents_.root() / "state").string()));
        auto services = platform::services();
        services.panels = panels_;
        services.webPages = pages_;
        services.shell = std::make_shared<platform::BashShell>(ZEL_TOOLS_FOLDER);
        platform::installServices(services);
    }

    [[nodiscard]] QWidget *window() const override { return delegate_->mainWindow(); }

    void launch() {
        delegate_.emplace();
        delegate_->applicationDidFinishLaunching();
        EXPECT_TRUE(QTest::qWaitForWindowActive(delegate_->mainWindow()));
        bench_.camera->forgetTransfers();
    }

    /// Ends the program and starts it anew: nothing but the disk and the camera remembers.
    void restart() {
        delegate_.reset();
        launch();
    }

    /// The command of that object name, wherever the menu has it.
    void command(const char *name) {
        for (QAction *menu : delegate_->mainWindow()->menuBar()->actions())
            for (QAction *action : menu->menu()->actions())
                if (action->objectName() == QLatin1String(name)) return action->trigger();
        ADD_FAILURE() << "no command " << name;
    }

    /// Control and `key`, while a picker has the keyboard.
    void shortcut(Qt::Key key) { QTest::keyClick(picker("pickerCentro"), key, Qt::ControlModifier); }

    std::shared_ptr<AnsweredPanels> panels_ = std::make_shared<AnsweredPanels>();
    std::shared_ptr<RecordedPages> pages_ = std::make_shared<RecordedPages>();
    std::optional<AppDelegate> delegate_;
};
