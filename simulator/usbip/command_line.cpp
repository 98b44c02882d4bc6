#include "simulator/usbip/command_line.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace simulator::usbip {

namespace {

constexpr unsigned kMostCameras = 4;

/// A whole number from `least` to `most`, and nothing else in the text.
template <typename Number>
bool readNumber(std::string_view text, Number least, Number most, Number &number) {
    Number read = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), read);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return false;
    if (read < least || read > most) return false;
    number = read;
    return true;
}

/// `ids` as model::Record has them.
bool takeModel(std::string_view ids, CameraOptions &options) {
    const auto record = std::ranges::find(model::kRecords, ids, &model::Record::ids);
    if (record == model::kRecords.end()) return false;
    options.record = *record;
    options.productName = simulatedName(*record);
    return true;
}

bool take(std::string_view option, std::string_view value, CommandLine &line) {
    if (option == "--port") return readNumber<std::uint16_t>(value, 0, 65535, line.port);
    if (option == "--cameras") return readNumber(value, 1u, kMostCameras, line.cameras);
    if (option == "--model") return takeModel(value, line.options);
    if (option == "--fault") return addFault(value, line.options);
    if (option != "--log" || value.empty()) return false;
    line.logFile = value;
    return true;
}

}  // namespace

std::optional<CommandLine> readCommandLine(std::span<const char *const> arguments) {
    CommandLine line;
    if (arguments.size() % 2 != 0) return std::nullopt;
    for (std::size_t i = 0; i < arguments.size(); i += 2)
        if (!take(arguments[i], arguments[i + 1], line)) return std::nullopt;
    return line;
}

}  // namespace simulator::usbip
