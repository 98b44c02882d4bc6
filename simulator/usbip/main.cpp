#include <csignal>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "simulator/usbip/command_line.h"
#include "simulator/usbip/room_picture.h"
#include "simulator/usbip/server.h"
#include "simulator/usbip/signals.h"

namespace {

using namespace simulator;
using namespace simulator::usbip;

constexpr int kEnded = 0;
constexpr int kFailed = 1;
constexpr int kMisused = 2;

Connection::Cameras makeCameras(const CommandLine &line, TransferLog &log) {
    Connection::Cameras cameras;
    for (unsigned number = 1; number <= line.cameras; ++number) {
        auto model = std::make_shared<CameraModel>(line.options);
        auto painter = [picture = RoomPicture()](const CameraModel &camera) mutable {
            return picture.of(camera);
        };
        cameras.push_back(std::make_shared<VirtualCamera>("1-" + std::to_string(number), number,
                                                          std::move(model), std::move(painter), log));
    }
    return cameras;
}

/// Serves until a signal ends the program. False: the system failed.
bool serve(Server &server, const Signals &pending) {
    while (server.runOnce(std::chrono::seconds(60), pending.descriptor())) {
        while (const std::optional<int> signal = pending.take()) {
            if (*signal != SIGUSR1) return true;
            server.unplugAll();
        }
    }
    return false;
}

}  // namespace

int main(int argc, char *argv[]) {
    const auto arguments = std::span<const char *const>(argv, static_cast<std::size_t>(argc)).subspan(1);
    const std::optional<CommandLine> line = readCommandLine(arguments);
    if (!line) {
        std::cerr << "Uso: zelvoria-camara-virtual [--port N] [--cameras N] [--model ID] [--fault NOMBRE]... "
                     "[--log FICHERO]\n"
                     "Las averías y el registro se explican en docs/camara-virtual.md\n";
        return kMisused;
    }

    const Signals pending{SIGUSR1, SIGTERM, SIGINT};
    std::ofstream file;
    if (!line->logFile.empty()) file.open(line->logFile, std::ios::trunc);
    if (!line->logFile.empty() && !file) {
        std::cerr << "No se puede escribir el registro en " << line->logFile << '\n';
        return kFailed;
    }

    TransferLog log(line->logFile.empty() ? std::cout : static_cast<std::ostream &>(file));
    std::string error;
    const auto server = Server::listenOn(line->port, makeCameras(*line, log), error);
    if (!server) {
        std::cerr << "No se puede escuchar en 127.0.0.1, puerto " << line->port << ": " << error << '\n';
        return kFailed;
    }
    log.event(
        "", "listening port=" + std::to_string(server->port()) + " cameras=" + std::to_string(line->cameras));
    if (!serve(*server, pending)) return kFailed;
    server->unplugAll();
    log.event("", "end");
    // Scripts count lines: a log that is not whole must not pass for success.
    return log.isWhole() ? kEnded : kFailed;
}
