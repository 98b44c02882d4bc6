// What a USB/IP client sends to the virtual camera: it is served or hung up on, and the camera is free again.
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <sstream>

#include "fuzz/input.h"
#include "simulator/camera_descriptors.h"
#include "simulator/usbip/connection.h"

using namespace simulator;
using namespace simulator::usbip;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    using namespace std::chrono_literals;
    std::ostringstream lines;
    TransferLog log(lines);
    const Connection::Cameras cameras{std::make_shared<VirtualCamera>(
        "1-1", 2, std::make_shared<CameraModel>(), [](const CameraModel &) { return Bytes(kFrameBytes); },
        log)};

    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends.data()) != 0) std::abort();
    const FileDescriptor client(ends[1]);
    TimePoint now{};
    {
        Connection connection(FileDescriptor(ends[0]), cameras);
        fuzz::Input input(data, size);
        std::array<std::uint8_t, 4096> thrownAway{};
        bool isOver = false;
        while (!isOver && !input.isUsedUp()) {
            // Pieces of any length, since a client's bytes come as they come.
            const auto piece = input.bytes(1u + input.byte());
            if (::send(client.get(), piece.data(), piece.size(), MSG_NOSIGNAL) < 0) break;
            now += 7ms;
            isOver = !connection.receive(now) || !connection.send();
            connection.collect(now);
            while (::recv(client.get(), thrownAway.data(), thrownAway.size(), 0) > 0) {
            }
        }
    }
    fuzz::promise(!cameras.front()->isAttached(), "a camera is free again when its client has gone");
    return 0;
}
