#include "platform/command_shell.h"

#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "platform/fatal.h"

namespace platform {
namespace {

constexpr const char *kBash = "/bin/bash";
constexpr std::string_view kPathVariable = "PATH=";
// What bash itself uses when it is started without a PATH.
constexpr const char *kBashDefaultPath = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";

/// While it lives, ended children stay waitable even if the program was started with SIGCHLD ignored (the
/// setting is inherited, and the kernel would then drop the exit status).
class WaitableChildren {
 public:
    WaitableChildren() {
        struct sigaction byDefault {};
        byDefault.sa_handler = SIG_DFL;
        changed_ = sigaction(SIGCHLD, &byDefault, &previous_) == 0;
    }
    ~WaitableChildren() {
        if (changed_) sigaction(SIGCHLD, &previous_, nullptr);
    }
    WaitableChildren(const WaitableChildren &) = delete;
    WaitableChildren &operator=(const WaitableChildren &) = delete;

 private:
    struct sigaction previous_ {};
    bool changed_ = false;
};

/// Gives a child the default action of SIGPIPE back, which this program ignores. That is wanted, for the
/// export's zip too: a command that nobody reads any more ends, as it would in a terminal.
class SpawnAttributes {
 public:
    SpawnAttributes() {
        if (posix_spawnattr_init(&attributes_) != 0) fatalStop();
        sigset_t toDefault;
        sigemptyset(&toDefault);
        sigaddset(&toDefault, SIGPIPE);
        if (posix_spawnattr_setsigdefault(&attributes_, &toDefault) != 0 ||
            posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF) != 0)
            fatalStop();
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
    SpawnAttributes(const SpawnAttributes &) = delete;
    SpawnAttributes &operator=(const SpawnAttributes &) = delete;

    [[nodiscard]] const posix_spawnattr_t *get() const { return &attributes_; }

 private:
    posix_spawnattr_t attributes_{};
};

std::vector<std::string> childEnvironment(const std::string &toolsFolder) {
    std::vector<std::string> variables;
    for (char **variable = environ; variable && *variable; ++variable) {
        if (toolsFolder.empty() || !std::string_view(*variable).starts_with(kPathVariable))
            variables.emplace_back(*variable);
    }
    if (!toolsFolder.empty()) {
        const char *path = std::getenv("PATH");
        variables.push_back(std::string(kPathVariable) + (path ? path : kBashDefaultPath) + ":" +
                            toolsFolder);
    }
    return variables;
}

/// The shape that exec functions take; valid as long as `texts` is unchanged.
std::vector<char *> pointersTo(std::vector<std::string> &texts) {
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::int32_t waitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) fatalStop();
    }
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

BashShell::BashShell(std::string toolsFolder) : toolsFolder_(std::move(toolsFolder)) {}

std::int32_t BashShell::run(const std::vector<std::string> &arguments) {
    std::vector<std::string> words{kBash, "-c"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = childEnvironment(toolsFolder_);

    const WaitableChildren waitable;
    const SpawnAttributes attributes;
    std::fflush(stdout);
    pid_t child = 0;
    if (posix_spawn(&child, kBash, nullptr, attributes.get(), pointersTo(words).data(),
                    pointersTo(variables).data()) != 0)
        fatalStop();
    return waitFor(child);
}

}  // namespace platform
