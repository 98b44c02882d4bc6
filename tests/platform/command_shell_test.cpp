#include "platform/command_shell.h"

#include <csignal>
#include <filesystem>

#include "support/printed.h"
#include "surroundings.h"

namespace {

namespace fs = std::filesystem;

TEST(BashShell, AnswersTheExitStatusOrTheSignalWhateverSignalsAreIgnored) {
    const auto child = std::signal(SIGCHLD, SIG_IGN);
    const auto pipe = std::signal(SIGPIPE, SIG_IGN);
    platform::BashShell shell;
    const std::pair<const char *, int> rows[] = {{"exit 3", 3},
                                                 {"no-such-command-anywhere 2>/dev/null", 127},
                                                 {"kill -KILL $$", SIGKILL},
                                                 {"kill -PIPE $$", SIGPIPE}};
    for (const auto &[line, status] : rows) EXPECT_EQ(shell.run({line}), status) << line;
    EXPECT_EQ(shell.run({"exit $(($# * 10 + ${#0} + ${#1}))", "four", "b"}), 15)
        << "further arguments: $0, $1";
    EXPECT_EQ(std::signal(SIGCHLD, child), SIG_IGN) << "the setting is given back";
    std::signal(SIGPIPE, pipe);
}

using BashShellTools = FolderTest;

TEST_F(BashShellTools, OfThePackageAreFoundLast) {
    for (const char *command : {"tools/zel-both", "tools/zel-only", "system/zel-both"}) {
        write(command, std::string("#!/bin/bash\necho ") + command + "\n");
        fs::permissions(path(command), fs::perms::owner_all);
    }
    platform::BashShell withTools(path("tools"));
    const auto run = [&](const char *line) { EXPECT_EQ(withTools.run({line}), 0) << line; };
    {
        const ScopedVariable systemPath("PATH", (path("system") + ":/usr/bin:/bin").c_str());
        EXPECT_EQ(support::printedBy([&] { run("zel-both; zel-only"); }),
                  "system/zel-both\ntools/zel-only\n");
        EXPECT_EQ(platform::BashShell().run({"zel-only 2>/dev/null"}), 127);
    }
    const ScopedVariable noPath("PATH", nullptr);
    EXPECT_EQ(support::printedBy([&] { run("zel-only; ls /dev/null"); }), "tools/zel-only\n/dev/null\n");
}

}  // namespace
