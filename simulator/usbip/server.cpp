#include "simulator/usbip/server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace simulator::usbip {

namespace {

constexpr std::size_t kMostConnections = 16;

std::string lastError() {
    return std::generic_category().message(errno);
}

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// The port that a socket is bound to; 0: it is not.
std::uint16_t boundPort(int socket) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    auto *const generic = static_cast<sockaddr *>(static_cast<void *>(&address));
    return ::getsockname(socket, generic, &size) == 0 ? ntohs(address.sin_port) : std::uint16_t{0};
}

void setOption(int socket, int level, int option) {
    const int on = 1;
    ::setsockopt(socket, level, option, &on, sizeof on);
}

}  // namespace

std::unique_ptr<Server> Server::listenOn(std::uint16_t port, Connection::Cameras cameras,
                                         std::string &error) {
    FileDescriptor listener(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const sockaddr_in address = loopback(port);
    const auto *const generic = static_cast<const sockaddr *>(static_cast<const void *>(&address));
    if (listener.isOpen()) setOption(listener.get(), SOL_SOCKET, SO_REUSEADDR);
    if (!listener.isOpen() || ::bind(listener.get(), generic, sizeof address) != 0 ||
        ::listen(listener.get(), SOMAXCONN) != 0) {
        error = lastError();
        return nullptr;
    }
    const std::uint16_t bound = boundPort(listener.get());
    return std::make_unique<Server>(Key{}, std::move(listener), bound, std::move(cameras));
}

bool Server::runOnce(std::chrono::milliseconds atMost, int wakeDescriptor) {
    std::vector<pollfd> watched{{listener_.get(), POLLIN, 0}, {wakeDescriptor, POLLIN, 0}};
    const std::size_t own = watched.size();
    for (const auto &connection : connections_) {
        const int events =
            (connection->wantsToRead() ? POLLIN : 0) | (connection->wantsToWrite() ? POLLOUT : 0);
        watched.push_back({connection->socket(), static_cast<short>(events), 0});
    }
    const int ready =
        ::poll(watched.data(), watched.size(), timeout(atMost, std::chrono::steady_clock::now()));
    if (ready < 0) return errno == EINTR;

    const TimePoint now = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < connections_.size(); ++i) serve(i, watched[own + i].revents, now);
    std::erase(connections_, nullptr);
    if (watched[0].revents != 0) accept();
    return true;
}

void Server::unplugAll() {
    for (const auto &connection : connections_)
        if (connection->camera() != nullptr) connection->camera()->announceUnplugging();
    std::erase_if(connections_, [](const auto &connection) { return connection->camera() != nullptr; });
}

int Server::timeout(std::chrono::milliseconds atMost, TimePoint now) const {
    std::chrono::milliseconds wait = atMost;
    for (const auto &connection : connections_) {
        const std::optional<TimePoint> next = connection->nextReply();
        if (!next) continue;
        if (*next <= now) return 0;
        wait = std::min(wait, std::chrono::ceil<std::chrono::milliseconds>(*next - now));
    }
    return static_cast<int>(wait.count());
}

void Server::accept() {
    FileDescriptor socket(::accept4(listener_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!socket.isOpen() || connections_.size() >= kMostConnections) return;
    // Each side waits for the other's short messages: delaying them to fill a packet would cost 40 ms each.
    setOption(socket.get(), IPPROTO_TCP, TCP_NODELAY);
    connections_.push_back(std::make_unique<Connection>(std::move(socket), cameras_));
}

void Server::serve(std::size_t connection, int events, TimePoint now) {
    std::unique_ptr<Connection> &client = connections_[connection];
    bool alive = (events & (POLLERR | POLLNVAL)) == 0;
    if (alive && (events & (POLLIN | POLLHUP)) != 0) alive = client->receive(now);
    if (alive) {
        client->collect(now);
        alive = client->send();
    }
    if (alive && client->camera() != nullptr && client->camera()->isGone()) {
        client->camera()->announceUnplugging();
        alive = false;
    }
    if (!alive) client.reset();
}

}  // namespace simulator::usbip
