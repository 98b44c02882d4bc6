#include "kernel/virtual_camera.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <ranges>
#include <sstream>

#include "kernel/usb_bus.h"

namespace guest {
namespace {

std::string newLogName() {
    static int number = 0;
    return "camera-" + std::to_string(++number) + ".log";
}

std::vector<std::string> commandLine(const std::vector<std::string> &options, const std::string &log) {
    std::vector<std::string> command{ZEL_BINARIES "/zelvoria-camara-virtual", "--log", log};
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

bool isDriverLoaded() {
    return std::filesystem::exists("/sys/module/uvcvideo");
}

/// Waits until udev has announced what has come and gone.
void settle() {
    run({"udevadm", "settle", "--timeout=20"});
}

/// The transfer of a log line; nothing unless it is a class request to a unit.
std::optional<LoggedTransfer> parse(const std::string &line) {
    LoggedTransfer transfer;
    std::istringstream words(line);
    words >> transfer.camera >> transfer.request;
    for (std::string word; words >> word;) {
        const auto value = [&](const char *key) {
            return word.starts_with(key) ? std::optional(word.substr(std::string(key).size())) : std::nullopt;
        };
        if (const auto unit = value("unit=")) transfer.unit = *unit;
        if (const auto selector = value("selector=")) transfer.selector = *selector;
        if (const auto length = value("length=")) transfer.length = *length;
        if (const auto data = value("data=")) transfer.data = *data;
        transfer.outcome = word;
    }
    if (transfer.unit.empty() || transfer.unit == "0") return std::nullopt;
    return transfer;
}

}  // namespace

VirtualCamera::VirtualCamera(const std::vector<std::string> &options)
    : log_(newLogName()), server_(commandLine(options, log_), log_ + ".output") {
    requireSoon("the camera's server to listen", [this] { return count("listening") > 0; });
}

VirtualCamera::~VirtualCamera() {
    server_.signal(SIGTERM);
    // The next test must find an empty bus.
    std::ignore = waitUntil([] { return camerasOnBus().empty(); }, seconds(10));
}

void VirtualCamera::plugIn(const std::string &name) {
    const std::size_t before = camerasOnBus().size();
    run({"usbip", "attach", "-r", "127.0.0.1", "-b", name});
    requireSoon("camera " + name + " on the bus", [&] { return camerasOnBus().size() > before; });

    // Nothing announces that the drivers have finished. With uvcvideo there is a node in the end, or the
    // driver gives up and asks no more. A camera may take a second for an answer.
    const milliseconds quiet = isDriverLoaded() ? milliseconds(2500) : milliseconds(300);
    std::size_t seen = 0;
    auto lastLine = std::chrono::steady_clock::now();
    requireSoon(
        "the drivers to finish with " + name,
        [&] {
            const auto now = std::chrono::steady_clock::now();
            const std::size_t logged = allLines().size();
            if (logged != seen) lastLine = now;
            seen = logged;
            const bool held =
                isDriverLoaded() && std::ranges::all_of(camerasOnBus(), [](const std::string &camera) {
                    return captureNode(camera).has_value();
                });
            return held || now - lastLine > quiet;
        },
        seconds(60));
    settle();
}

void VirtualCamera::pullOut() {
    pullOutWithoutWaiting();
    waitUntilGone();
}

void VirtualCamera::waitUntilGone() {
    requireSoon("an empty bus", [] { return camerasOnBus().empty(); });
    settle();
}

void VirtualCamera::forget() {
    forgotten_ = allLines().size();
}

std::vector<std::string> VirtualCamera::allLines() const {
    std::vector<std::string> lines;
    std::istringstream text(readFile(log_));
    // A line without its end is still being written.
    for (std::string line; std::getline(text, line) && !text.eof();) lines.push_back(line);
    return lines;
}

std::vector<std::string> VirtualCamera::lines() const {
    std::vector<std::string> lines = allLines();
    lines.erase(lines.begin(),
                lines.begin() + static_cast<std::ptrdiff_t>(std::min(forgotten_, lines.size())));
    return lines;
}

std::vector<LoggedTransfer> VirtualCamera::transfers() const {
    std::vector<LoggedTransfer> found;
    for (const std::string &line : lines())
        if (const auto transfer = parse(line)) found.push_back(*transfer);
    return found;
}

std::vector<LoggedTransfer> VirtualCamera::transfers(const std::string &request,
                                                     const std::string &selector) const {
    std::vector<LoggedTransfer> found = transfers();
    std::erase_if(found, [&](const LoggedTransfer &transfer) {
        return transfer.request != request || transfer.selector != selector;
    });
    return found;
}

int VirtualCamera::count(const std::string &event) const {
    return static_cast<int>(std::ranges::count_if(lines(), [&](const std::string &line) {
        return line.starts_with(event) || line.find(" " + event) != std::string::npos;
    }));
}

}  // namespace guest
