#include "platform/command_shell.h"

#include "surroundings.h"

#include <sys/wait.h>
#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

TEST(BashShell, AnswersTheExitStatusOrTheSignal) {
    platform::BashShell shell;
    EXPECT_EQ(shell.run({"exit 3"}), 3);
    EXPECT_EQ(shell.run({"true"}), 0);
    EXPECT_EQ(shell.run({"no-such-command-anywhere 2>/dev/null"}), 127);
    EXPECT_EQ(shell.run({"kill -KILL $$"}), SIGKILL);
    EXPECT_EQ(shell.run({"kill -TERM $$"}), SIGTERM);
    EXPECT_EQ(shell.run({"exit $(($# * 10 + ${#0} + ${#1}))", "four", "b"}), 15)
        << "further arguments: $0, $1";
}

TEST(BashShell, ChildrenAndTheirStatusAreAsUsualWhateverSignalsAreIgnored) {
    const auto child = std::signal(SIGCHLD, SIG_IGN);
    const auto pipe = std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(platform::BashShell().run({"exit 3"}), 3);
    EXPECT_EQ(platform::BashShell().run({"kill -PIPE $$"}), SIGPIPE);
    EXPECT_EQ(std::signal(SIGCHLD, child), SIG_IGN) << "the setting is given back";
    std::signal(SIGPIPE, pipe);
}

TEST(BashShellDeath, StopsWhenBashCannotBeStarted) {
    // The kernel refuses to start a program with so long an argument.
    EXPECT_EXIT(platform::BashShell().run({std::string(4'000'000, 'x')}), ::testing::KilledBySignal(SIGABRT),
                "");
}

class BashShellStreams : public FolderTest {
 protected:
    /// What `action` and its children wrote to the standard output, which is a file meanwhile.
    template <typename Action>
    std::string outputOf(Action action) {
        std::fflush(stdout);
        const int terminal = dup(STDOUT_FILENO);
        std::FILE *file = std::freopen(path("output").c_str(), "w", stdout);
        EXPECT_NE(file, nullptr);
        action();
        std::fflush(stdout);
        dup2(terminal, STDOUT_FILENO);
        close(terminal);
        return read(path("output"));
    }
};

TEST_F(BashShellStreams, FindsToolsOfThePackageLast) {
    const auto makeCommand = [&](const std::string &folder, const std::string &name) {
        fs::create_directories(path(folder));
        write(path(folder + "/" + name), "#!/bin/bash\necho " + folder + "\n");
        fs::permissions(path(folder + "/" + name), fs::perms::owner_all);
    };
    makeCommand("tools", "zel-both");
    makeCommand("tools", "zel-only");
    makeCommand("system", "zel-both");
    const ScopedVariable systemPath("PATH", (path("system") + ":/usr/bin:/bin").c_str());

    platform::BashShell withTools(path("tools"));
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(withTools.run({"zel-both; zel-only"}), 0); }), "system\ntools\n");
    EXPECT_EQ(platform::BashShell().run({"zel-only 2>/dev/null"}), 127);
    EXPECT_EQ(qgetenv("PATH").toStdString(), path("system") + ":/usr/bin:/bin") << "the child's PATH alone";

    const ScopedVariable noPath("PATH", nullptr);
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(withTools.run({"zel-only; ls /dev/null"}), 0); }),
              "tools\n/dev/null\n");
}

}  // namespace
