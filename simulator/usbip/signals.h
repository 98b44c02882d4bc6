#pragma once

#include <sys/signalfd.h>

#include <csignal>
#include <initializer_list>
#include <optional>

#include "simulator/usbip/file_descriptor.h"

namespace simulator::usbip {

/// Turns signals into something to read, so that none interrupts a transfer. Create it before the first
/// thread.
class Signals {
 public:
    explicit Signals(std::initializer_list<int> numbers) {
        sigset_t set;
        sigemptyset(&set);
        for (const int number : numbers) sigaddset(&set, number);
        descriptor_ = FileDescriptor(::signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC));
        // Only if they can be read: a signal that is blocked and unread could not end the program.
        if (descriptor_.isOpen()) sigprocmask(SIG_BLOCK, &set, nullptr);
    }

    /// Readable while a signal waits.
    [[nodiscard]] int descriptor() const { return descriptor_.get(); }

    /// The next one; nothing: none has come. Does not wait.
    [[nodiscard]] std::optional<int> take() const {
        signalfd_siginfo info{};
        if (::read(descriptor_.get(), &info, sizeof info) != static_cast<ssize_t>(sizeof info))
            return std::nullopt;
        return static_cast<int>(info.ssi_signo);
    }

 private:
    FileDescriptor descriptor_;
};

}  // namespace simulator::usbip
