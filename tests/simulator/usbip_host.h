#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "simulator/camera_model.h"
#include "simulator/usbip/server.h"

/// The host's end of a connection. It writes the protocol by hand, so that a mistake in the server's own
/// reading and writing does not cancel out.
namespace usbip_test {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kToDevice = 0;
constexpr std::uint32_t kToHost = 1;

/// Numbers big-endian, as the protocol has them.
Bytes big(std::initializer_list<std::uint32_t> numbers);
Bytes operator+(Bytes front, const Bytes &back);
std::uint32_t bigAt(const Bytes &bytes, std::size_t at);
Bytes wireSetup(const usb::SetupPacket &setup);
Bytes importRequest(const std::string &busId);
Bytes submit(std::uint32_t sequence, std::uint32_t endpoint, std::uint32_t direction, std::uint32_t length,
             const Bytes &setup = Bytes(8, 0));
Bytes unlink(std::uint32_t sequence, std::uint32_t target);

struct Reply {
    std::uint32_t command = 0;
    std::uint32_t sequence = 0;
    std::int32_t status = 0;
    Bytes data;  ///< what the camera answered
};

/// A server with two cameras, in this process and thread.
class Bench {
 public:
    explicit Bench(simulator::CameraOptions options = {});

    std::vector<std::shared_ptr<simulator::CameraModel>> models;
    std::ostringstream log;
    int painted = 0;  ///< frames drawn; a frame's bytes are all its number
    simulator::usbip::TransferLog transferLog{log};
    std::unique_ptr<simulator::usbip::Server> server;
};

/// One connection to the bench's server.
class Host {
 public:
    explicit Host(Bench &bench);

    void send(const Bytes &bytes);
    /// Reads exactly this many bytes while the server runs. Fewer: it closed the connection, or nothing came
    /// within two seconds.
    Bytes receive(std::size_t count);
    /// Whether the server closes the connection within two seconds, without a further byte.
    bool isClosed();
    /// Whether nothing comes for a while.
    bool isQuiet(std::chrono::milliseconds time);

    /// True: attached.
    bool import(const std::string &busId = "1-1");
    /// The next reply; `endpoint` data follows it only where the transfer was to the host.
    std::optional<Reply> reply(bool toHost);
    /// One control transfer and its reply.
    Reply control(const usb::SetupPacket &setup, const Bytes &data = {});
    Reply get(std::uint8_t request, std::uint16_t value, std::uint16_t index, std::uint16_t length);
    Reply set(std::uint16_t value, std::uint16_t index, const Bytes &data);
    /// Agrees on the video and starts it.
    bool startStream();

 private:
    bool pump(std::size_t count, std::chrono::milliseconds time);

    Bench *bench_;
    simulator::usbip::FileDescriptor socket_;
    Bytes received_;
    bool closed_ = false;
    std::uint32_t sequence_ = 1000;
};

}  // namespace usbip_test
