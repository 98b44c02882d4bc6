#include "simulator/usbip/transfer_log.h"

#include <algorithm>
#include <array>
#include <string>

#include "simulator/requests.h"

namespace simulator::usbip {

namespace {

struct Named {
    std::uint8_t type;  // bmRequestType without its direction and recipient
    std::uint8_t request;
    std::string_view name;
};

constexpr std::array kNames{
    Named{kStandardRequest, kGetStatus, "GET_STATUS"},
    Named{kStandardRequest, kClearFeature, "CLEAR_FEATURE"},
    Named{kStandardRequest, kSetFeature, "SET_FEATURE"},
    Named{kStandardRequest, kSetAddress, "SET_ADDRESS"},
    Named{kStandardRequest, kGetDescriptor, "GET_DESCRIPTOR"},
    Named{kStandardRequest, kSetDescriptor, "SET_DESCRIPTOR"},
    Named{kStandardRequest, kGetConfiguration, "GET_CONFIGURATION"},
    Named{kStandardRequest, kSetConfiguration, "SET_CONFIGURATION"},
    Named{kStandardRequest, kGetInterface, "GET_INTERFACE"},
    Named{kStandardRequest, kSetInterface, "SET_INTERFACE"},
    Named{kClassRequest, request::kSetCur, "SET_CUR"},
    Named{kClassRequest, request::kGetCur, "GET_CUR"},
    Named{kClassRequest, request::kGetMin, "GET_MIN"},
    Named{kClassRequest, request::kGetMax, "GET_MAX"},
    Named{kClassRequest, request::kGetRes, "GET_RES"},
    Named{kClassRequest, request::kGetLen, "GET_LEN"},
    Named{kClassRequest, request::kGetInfo, "GET_INFO"},
    Named{kClassRequest, request::kGetDef, "GET_DEF"},
};

void appendHex(std::string &line, std::uint32_t value, unsigned digits) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    for (unsigned i = digits; i > 0; --i) line += kDigits[value >> (4 * (i - 1)) & 0xF];
}

void appendName(std::string &line, const usb::SetupPacket &setup) {
    const auto *const named = std::ranges::find_if(kNames, [&](const Named &each) {
        return each.type == kindOf(setup) && each.request == setup.request;
    });
    if (named != kNames.end()) {
        line += named->name;
        return;
    }
    line += "REQUEST_";
    appendHex(line, setup.requestType, 2);
    line += '_';
    appendHex(line, setup.request, 2);
}

void appendTarget(std::string &line, const usb::SetupPacket &setup) {
    if (isInterfaceClassRequest(setup)) {
        line += " interface=" + std::to_string(interfaceOf(setup));
        line += " unit=" + std::to_string(unitOf(setup)) + " selector=0x";
        appendHex(line, selectorOf(setup), 2);
        return;
    }
    line += " value=0x";
    appendHex(line, setup.value, 4);
    line += " index=0x";
    appendHex(line, setup.index, 4);
}

std::string_view nameOf(TransferEnd end) {
    switch (end) {
        case TransferEnd::ok:
            return " ok";
        case TransferEnd::stall:
            return " stall";
        case TransferEnd::cancelled:
            break;
    }
    return " cancelled";
}

}  // namespace

void TransferLog::transfer(std::string_view busId, const usb::SetupPacket &setup,
                           std::span<const std::uint8_t> data, TransferEnd end) {
    std::string line(busId);
    line += ' ';
    appendName(line, setup);
    appendTarget(line, setup);
    line += " length=" + std::to_string(setup.length) + " data=";
    for (const std::uint8_t byte : data) appendHex(line, byte, 2);
    line += nameOf(end);
    *out_ << line << std::endl;
}

void TransferLog::event(std::string_view busId, std::string_view text) {
    *out_ << busId << (busId.empty() ? "" : " ") << text << std::endl;
}

}  // namespace simulator::usbip
