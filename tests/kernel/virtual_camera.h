#pragma once

#include <csignal>
#include <string>
#include <vector>

#include "kernel/process.h"

namespace guest {

/// One control transfer, as the camera has logged it.
struct LoggedTransfer {
    std::string camera;    ///< "1-1", as the server calls it
    std::string request;   ///< "SET_CUR"
    std::string unit;      ///< "1"; empty for anything but a class request
    std::string selector;  ///< "0x0d"
    std::string length;
    std::string data;  ///< hexadecimal, wire order
    std::string outcome;
};

/// A server of virtual cameras on loopback, and their connections to this kernel's USB ports.
class VirtualCamera {
 public:
    explicit VirtualCamera(const std::vector<std::string> &options = {});
    ~VirtualCamera();
    VirtualCamera(const VirtualCamera &) = delete;
    VirtualCamera &operator=(const VirtualCamera &) = delete;

    /// Attaches camera `name` of the server and waits until the kernel has finished with it.
    void plugIn(const std::string &name = "1-1");
    /// Pulls all cables at once. The second does not wait until the kernel has noticed.
    void pullOut();
    void pullOutWithoutWaiting() const { server_.signal(SIGUSR1); }
    static void waitUntilGone();
    /// Kills the process, as when a camera's power supply dies.
    void die() const { server_.signal(SIGKILL); }

    /// For a shell that pulls the cables by SIGUSR1 while the test is inside a call.
    [[nodiscard]] std::string processId() const { return std::to_string(server_.id()); }

    /// lines() begins anew from here on.
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

 private:
    [[nodiscard]] std::vector<std::string> allLines() const;

    std::string log_;
    Background server_;
    std::size_t forgotten_ = 0;
};

constexpr char kPanTilt[] = "0x0d";
constexpr char kZoom[] = "0x0b";

}  // namespace guest
