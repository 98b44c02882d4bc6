#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace guest {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// Polls `condition` until it holds or `limit` is over. Whether it held.
[[nodiscard]] bool waitUntil(const std::function<bool()> &condition, milliseconds limit);

/// The same, but throws std::runtime_error with `what` where it did not.
void requireSoon(const std::string &what, const std::function<bool()> &condition,
                 milliseconds limit = seconds(20));

/// A program that runs beside the test. It dies with the test, also when the test crashes.
class Background {
 public:
    using Environment = std::map<std::string, std::string>;

    /// Starts it; both output streams go into the file `output`.
    Background(const std::vector<std::string> &command, std::string output,
               const Environment &environment = {});
    /// Sends SIGTERM, and kills it when it does not end.
    ~Background();
    Background(const Background &) = delete;
    Background &operator=(const Background &) = delete;

    [[nodiscard]] pid_t id() const { return pid_; }
    void signal(int number) const;
    [[nodiscard]] bool isRunning();
    /// Its exit status (128 and the signal's number when a signal ended it); throws when it takes longer.
    [[nodiscard]] int waitForEnd(milliseconds limit);
    /// What it has written so far.
    [[nodiscard]] std::string output() const;

 private:
    pid_t pid_ = -1;
    bool running_ = true;
    int status_ = 0;
    std::string output_;
};

/// Runs a command to its end and returns what it wrote. Throws unless it ends with 0 within `limit`.
std::string run(const std::vector<std::string> &command, milliseconds limit = seconds(30));

[[nodiscard]] std::string readFile(const std::string &path);

}  // namespace guest
