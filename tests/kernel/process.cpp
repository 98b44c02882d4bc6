#include "kernel/process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace guest {
namespace {

[[noreturn]] void becomeProgram(const std::vector<std::string> &command, const std::string &output,
                                const Background::Environment &environment) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0644);
    ::dup2(file, STDOUT_FILENO);
    ::dup2(file, STDERR_FILENO);
    ::close(file);
    for (const auto &[name, value] : environment) ::setenv(name.c_str(), value.c_str(), 1);

    std::vector<std::string> words = command;
    std::vector<char *> arguments;
    for (std::string &word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execvp(arguments.front(), arguments.data());
    std::_Exit(127);
}

std::string joined(const std::vector<std::string> &words) {
    std::string line;
    for (const std::string &word : words) line += (line.empty() ? "" : " ") + word;
    return line;
}

}  // namespace

bool waitUntil(const std::function<bool()> &condition, milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(milliseconds(30));
    }
    return true;
}

void requireSoon(const std::string &what, const std::function<bool()> &condition, milliseconds limit) {
    if (!waitUntil(condition, limit)) throw std::runtime_error("in vain, waited for: " + what);
}

Background::Background(const std::vector<std::string> &command, std::string output,
                       const Environment &environment)
    : output_(std::move(output)) {
    pid_ = ::fork();
    if (pid_ < 0) throw std::runtime_error("no process for " + joined(command));
    if (pid_ == 0) becomeProgram(command, output_, environment);
}

Background::~Background() {
    if (!isRunning()) return;
    signal(SIGTERM);
    if (waitUntil([this] { return !isRunning(); }, seconds(5))) return;
    signal(SIGKILL);
    ::waitpid(pid_, nullptr, 0);
}

void Background::signal(int number) const {
    if (running_) ::kill(pid_, number);
}

bool Background::isRunning() {
    int status = 0;
    if (!running_ || ::waitpid(pid_, &status, WNOHANG) != pid_) return running_;
    running_ = false;
    status_ = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return false;
}

int Background::waitForEnd(milliseconds limit) {
    requireSoon(
        "the end of a program that wrote:\n" + output(), [this] { return !isRunning(); }, limit);
    return status_;
}

std::string Background::output() const {
    return readFile(output_);
}

std::string run(const std::vector<std::string> &command, milliseconds limit) {
    Background program(command, "command.txt");
    if (const int status = program.waitForEnd(limit); status != 0)
        throw std::runtime_error(joined(command) + " answered " + std::to_string(status) + ":\n" +
                                 program.output());
    return program.output();
}

std::string readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace guest
