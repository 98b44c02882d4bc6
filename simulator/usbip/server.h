#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "simulator/usbip/connection.h"

namespace simulator::usbip {

/// Offers cameras to the USB/IP clients of this machine, and to nobody else's. One thread; works only
/// inside runOnce().
class Server {
 public:
    /// Listens on 127.0.0.1. Port 0: any free one. Null: it cannot, and `error` says why.
    [[nodiscard]] static std::unique_ptr<Server> listenOn(std::uint16_t port, Connection::Cameras cameras,
                                                          std::string &error);

    [[nodiscard]] std::uint16_t port() const { return port_; }

    /// Serves what comes within `atMost`, then returns, earlier if something came, or if `wakeDescriptor`
    /// (negative: none) has something to read. False: poll() failed.
    [[nodiscard]] bool runOnce(std::chrono::milliseconds atMost, int wakeDescriptor = -1);

    /// Unplugs every camera that is attached. They can be attached again.
    void unplugAll();

 private:
    struct Key {};  // only listenOn() can make one, so that there is no server that does not listen

 public:
    Server(Key, FileDescriptor listener, std::uint16_t port, Connection::Cameras cameras)
        : cameras_(std::move(cameras)), listener_(std::move(listener)), port_(port) {}

 private:
    [[nodiscard]] int timeout(std::chrono::milliseconds atMost, TimePoint now) const;
    void accept();
    void serve(std::size_t connection, int events, TimePoint now);

    Connection::Cameras cameras_;
    FileDescriptor listener_;
    std::uint16_t port_;
    std::vector<std::unique_ptr<Connection>> connections_;
};

}  // namespace simulator::usbip
