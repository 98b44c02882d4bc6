#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "simulator/camera_descriptors.h"
#include "simulator/camera_model.h"
#include "simulator/usbip/server.h"

/// The host's end of a connection. It writes the protocol by hand, so that a mistake in the server's own
/// reading and writing does not cancel out.
namespace usbip_test {

using namespace std::chrono_literals;
using simulator::Bytes;

constexpr std::uint32_t kToDevice = 0;
constexpr std::uint32_t kToHost = 1;

/// Numbers big-endian, as the protocol has them.
inline Bytes big(std::initializer_list<std::uint32_t> numbers) {
    Bytes bytes;
    for (const std::uint32_t number : numbers)
        for (const unsigned shift : {24u, 16u, 8u, 0u})
            bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    return bytes;
}

inline std::uint32_t bigAt(const Bytes &bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i) number = number << 8 | bytes.at(i);
    return number;
}

inline Bytes operator+(Bytes front, const Bytes &back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

inline Bytes wireSetup(const usb::SetupPacket &setup) {
    Bytes bytes{setup.requestType, setup.request};
    for (const std::uint16_t number : {setup.value, setup.index, setup.length})
        for (const unsigned shift : {0u, 8u}) bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    return bytes;
}

inline Bytes importRequest(const std::string &busId) {
    Bytes bytes = big({0x01118003, 0}) + Bytes(busId.begin(), busId.end());
    bytes.resize(40, 0);
    return bytes;
}

inline Bytes submit(std::uint32_t sequence, std::uint32_t endpoint, std::uint32_t direction,
                    std::uint32_t length, const Bytes &setup = Bytes(8, 0)) {
    return big({1, sequence, 0x00010001, direction, endpoint, 0, length, 0, 0, 0}) + setup;
}

inline Bytes unlink(std::uint32_t sequence, std::uint32_t target) {
    return big({2, sequence, 0x00010001, 0, 0, target, 0, 0, 0, 0, 0, 0});
}

struct Reply {
    std::uint32_t sequence = 0;
    std::int32_t status = -1;
    Bytes data;  ///< what the camera answered
};

/// A server with two cameras, in this process and thread.
class Bench {
 public:
    Bench() {
        simulator::usbip::Connection::Cameras cameras;
        for (const std::uint32_t number : {1u, 2u}) {
            models.push_back(std::make_shared<simulator::CameraModel>());
            const auto paint = [](const simulator::CameraModel &) { return Bytes(simulator::kFrameBytes); };
            cameras.push_back(std::make_shared<simulator::usbip::VirtualCamera>(
                "1-" + std::to_string(number), number, models.back(), paint, transferLog));
        }
        std::string error;
        server = simulator::usbip::Server::listenOn(0, std::move(cameras), error);
    }

    std::vector<std::shared_ptr<simulator::CameraModel>> models;
    std::ostringstream log;
    simulator::usbip::TransferLog transferLog{log};
    std::unique_ptr<simulator::usbip::Server> server;
};

/// One connection to the bench's server.
class Host {
 public:
    explicit Host(Bench &bench) : bench_(&bench), socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(bench.server->port());
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const auto *const generic = static_cast<const sockaddr *>(static_cast<const void *>(&address));
        closed_ = ::connect(socket_.get(), generic, sizeof address) != 0;
    }

    void send(const Bytes &bytes) {
        const ssize_t sent = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent != static_cast<ssize_t>(bytes.size())) closed_ = true;
    }

    /// Reads exactly this many bytes while the server runs. Fewer: it closed the connection, or nothing came
    /// within two seconds.
    Bytes receive(std::size_t count) {
        pump(count, 2s);
        const auto end = received_.begin() + static_cast<std::ptrdiff_t>(std::min(count, received_.size()));
        Bytes bytes(received_.begin(), end);
        received_.erase(received_.begin(), end);
        return bytes;
    }

    /// Whether the server closes the connection within two seconds, without a further byte.
    bool isClosed() {
        pump(1, 2s);
        return closed_ && received_.empty();
    }
    /// Whether nothing comes for a while.
    bool isQuiet(std::chrono::milliseconds time) {
        pump(1, time);
        return !closed_ && received_.empty();
    }

    /// True: attached.
    bool import(const std::string &busId = "1-1") {
        send(importRequest(busId));
        return receive(8) == big({0x01110003, 0}) && receive(312).size() == 312;
    }

    /// The next reply to a command; without one, a status that no reply has.
    Reply reply(bool toHost = true) {
        const Bytes header = receive(48);
        if (header.size() != 48) return {};
        const bool hasData = toHost && bigAt(header, 0) == 3;
        return {bigAt(header, 4), static_cast<std::int32_t>(bigAt(header, 20)),
                hasData ? receive(bigAt(header, 24)) : Bytes{}};
    }

    /// One control transfer and its reply.
    Reply control(const usb::SetupPacket &setup, const Bytes &data = {}) {
        const bool toHost = (setup.requestType & 0x80) != 0;
        send(submit(7, 0, toHost ? kToHost : kToDevice, setup.length, wireSetup(setup)) + data);
        return reply(toHost);
    }

 private:
    void pump(std::size_t count, std::chrono::milliseconds time) {
        const auto until = std::chrono::steady_clock::now() + time;
        while (received_.size() < count && !closed_ && std::chrono::steady_clock::now() < until) {
            if (!bench_->server->runOnce(5ms)) return;
            std::array<std::uint8_t, 65536> buffer;
            const ssize_t got = ::recv(socket_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
            if (got > 0) received_.insert(received_.end(), buffer.begin(), buffer.begin() + got);
            closed_ = got == 0 || (got < 0 && errno != EAGAIN);
        }
    }

    Bench *bench_;
    simulator::usbip::FileDescriptor socket_;
    Bytes received_;
    bool closed_ = false;
};

}  // namespace usbip_test
