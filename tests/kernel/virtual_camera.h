#pragma once

#include <csignal>
#include <string>
#include <vector>

#include "kernel/process.h"

namespace guest {

/// One control transfer, as the camera has logged it.
struct LoggedTransfer {
    std::string line;
    std::string camera;    ///< "1-1", as the server calls it
    std::string request;   ///< "SET_CUR"
    std::string unit;      ///< "1"; empty for anything but a class request
    std::string selector;  ///< "0x0d"
    std::string length;
    std::string data;  ///< hexadecimal, wire order
    std::string outcome;
};

/// A server of virtual cameras on loopback, and the cables between it and this kernel's USB ports.
class VirtualCamera {
 public:
    explicit VirtualCamera(const std::vector<std::string> &options = {});
    ~VirtualCamera();
    VirtualCamera(const VirtualCamera &) = delete;
    VirtualCamera &operator=(const VirtualCamera &) = delete;

    /// Attaches camera `name` of the server and waits until the kernel has finished with it.
    void plugIn(const std::string &name = "1-1");
    /// All cables come out at once; waits until everybody has noticed unless told not to.
    void pullOut();
    void pullOutWithoutWaiting() const { server_.signal(SIGUSR1); }
    static void waitUntilGone();
    /// The process is gone without a word, as a camera whose power supply dies.
    void die() const { server_.signal(SIGKILL); }

    /// For a shell that pulls the cable (SIGUSR1) while the test is inside a call.
    [[nodiscard]] std::string processId() const { return std::to_string(server_.id()); }

    /// From here on, log() begins anew.
    void forget();
    /// The lines since then.
    [[nodiscard]] std::vector<std::string> lines() const;
    /// The class requests to units (controls) among them.
    [[nodiscard]] std::vector<LoggedTransfer> transfers() const;
    /// Those of them that are `request` to `selector`.
    [[nodiscard]] std::vector<LoggedTransfer> transfers(const std::string &request,
                                                        const std::string &selector) const;
    /// How many lines are `camera event...`.
    [[nodiscard]] int count(const std::string &event) const;
    /// Prints transfers(), as evidence for who reads the test's output.
    void show(const std::string &title) const;

 private:
    [[nodiscard]] std::vector<std::string> allLines() const;

    std::string log_;
    Background server_;
    std::size_t forgotten_ = 0;
};

constexpr char kPanTilt[] = "0x0d";
constexpr char kZoom[] = "0x0b";

}  // namespace guest
