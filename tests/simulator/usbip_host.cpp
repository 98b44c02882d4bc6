#include "simulator/usbip_host.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>

#include "simulator/camera_descriptors.h"

namespace usbip_test {

using namespace std::chrono_literals;
using namespace simulator::usbip;

Bytes big(std::initializer_list<std::uint32_t> numbers) {
    Bytes bytes;
    for (const std::uint32_t number : numbers)
        for (const unsigned shift : {24u, 16u, 8u, 0u})
            bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    return bytes;
}

Bytes operator+(Bytes front, const Bytes &back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

std::uint32_t bigAt(const Bytes &bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) number = number << 8 | (at + i < bytes.size() ? bytes[at + i] : 0u);
    return number;
}

Bytes wireSetup(const usb::SetupPacket &setup) {
    Bytes bytes{setup.requestType, setup.request};
    for (const std::uint16_t number : {setup.value, setup.index, setup.length}) {
        bytes.push_back(static_cast<std::uint8_t>(number & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(number >> 8));
    }
    return bytes;
}

Bytes importRequest(const std::string &busId) {
    Bytes bytes = big({0x01118003, 0});
    bytes.insert(bytes.end(), busId.begin(), busId.end());
    bytes.resize(40, 0);
    return bytes;
}

Bytes submit(std::uint32_t sequence, std::uint32_t endpoint, std::uint32_t direction, std::uint32_t length,
             const Bytes &setup) {
    return big({1, sequence, 0x00010001, direction, endpoint, 0, length, 0, 0, 0}) + setup;
}

Bytes unlink(std::uint32_t sequence, std::uint32_t target) {
    return big({2, sequence, 0x00010001, 0, 0, target, 0, 0, 0, 0, 0, 0});
}

Bench::Bench(simulator::CameraOptions options) {
    Connection::Cameras cameras;
    for (const std::uint32_t number : {1u, 2u}) {
        models.push_back(std::make_shared<simulator::CameraModel>(options));
        cameras.push_back(std::make_shared<VirtualCamera>(
            "1-" + std::to_string(number), number, models.back(),
            [this](const simulator::CameraModel &) {
                return Bytes(simulator::kFrameBytes, static_cast<std::uint8_t>(++painted));
            },
            transferLog));
    }
    std::string error;
    server = Server::listenOn(0, std::move(cameras), error);
}

Host::Host(Bench &bench) : bench_(&bench), socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(bench.server->port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const auto *const generic = static_cast<const sockaddr *>(static_cast<const void *>(&address));
    closed_ = ::connect(socket_.get(), generic, sizeof address) != 0;
}

void Host::send(const Bytes &bytes) {
    const ssize_t sent = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent != static_cast<ssize_t>(bytes.size())) closed_ = true;
}

bool Host::pump(std::size_t count, std::chrono::milliseconds time) {
    const auto until = std::chrono::steady_clock::now() + time;
    while (received_.size() < count && !closed_ && std::chrono::steady_clock::now() < until) {
        if (!bench_->server->runOnce(5ms)) return false;
        std::array<std::uint8_t, 65536> buffer;
        const ssize_t got = ::recv(socket_.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (got > 0) received_.insert(received_.end(), buffer.begin(), buffer.begin() + got);
        closed_ = got == 0 || (got < 0 && errno != EAGAIN);
    }
    return received_.size() >= count;
}

Bytes Host::receive(std::size_t count) {
    pump(count, 2s);
    const auto end = received_.begin() + static_cast<std::ptrdiff_t>(std::min(count, received_.size()));
    Bytes bytes(received_.begin(), end);
    received_.erase(received_.begin(), end);
    return bytes;
}

bool Host::isClosed() {
    pump(1, 2s);
    return closed_ && received_.empty();
}

bool Host::isQuiet(std::chrono::milliseconds time) {
    return !pump(1, time) && !closed_;
}

bool Host::import(const std::string &busId) {
    send(importRequest(busId));
    const Bytes header = receive(8);
    return header == big({0x01110003, 0}) && receive(312).size() == 312;
}

std::optional<Reply> Host::reply(bool toHost) {
    const Bytes header = receive(48);
    if (header.size() != 48) return std::nullopt;
    Reply reply{bigAt(header, 0), bigAt(header, 4), static_cast<std::int32_t>(bigAt(header, 20)), {}};
    const std::uint32_t actual = reply.command == 3 ? bigAt(header, 24) : 0;
    if (toHost) reply.data = receive(actual);
    return reply;
}

Reply Host::control(const usb::SetupPacket &setup, const Bytes &data) {
    const bool toHost = (setup.requestType & 0x80) != 0;
    ++sequence_;
    send(submit(sequence_, 0, toHost ? kToHost : kToDevice, setup.length, wireSetup(setup)) + data);
    const std::optional<Reply> answer = reply(toHost);
    return answer && answer->sequence == sequence_ && answer->command == 3 ? *answer : Reply{};
}

Reply Host::get(std::uint8_t request, std::uint16_t value, std::uint16_t index, std::uint16_t length) {
    return control({0xA1, request, value, index, length});
}

Reply Host::set(std::uint16_t value, std::uint16_t index, const Bytes &data) {
    return control({0x21, 0x01, value, index, static_cast<std::uint16_t>(data.size())}, data);
}

bool Host::startStream() {
    const Reply offer = get(0x81, 0x0100, 1, 34);
    return offer.data.size() == 34 && set(0x0100, 1, offer.data).status == 0 &&
           set(0x0200, 1, offer.data).status == 0;
}

}  // namespace usbip_test
