#include "uvc/uvc_controller.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "uvc/uvc_control.h"

namespace {

using namespace usb::request;

constexpr std::uint32_t kRangeCapability = 1u << 8;
constexpr std::uint32_t kStepCapability = 1u << 9;
constexpr std::uint32_t kDefaultCapability = 1u << 10;

using NameMap = std::unordered_map<std::string_view, std::size_t>;

NameMap enableMappingOf(std::uint32_t unitKind) {
    NameMap mapping;
    for (const uvc::CatalogueRow &row : UVCControllerControls)
        if (row.unitKind == unitKind) mapping.emplace(row.name, row.enableBit);
    return mapping;
}

/// A device without a bitmap has not said what it lacks, so everything may be asked for.
bool isEnabled(const std::optional<usb::ControlBitmap> &bitmap, const NameMap &enableMapping,
               std::string_view name) {
    if (!bitmap) return true;
    const auto entry = enableMapping.find(name);
    return entry != enableMapping.end() && usb::hasControl(*bitmap, entry->second);
}

}  // namespace

UVCController::UVCController(Checked, Parts parts) : parts_(std::move(parts)) {}

UVCController::~UVCController() {
    setIsInterfaceOpen(false);
}

std::string UVCController::description() const {
    char ids[128];
    std::snprintf(ids, sizeof ids,
                  "\"; vendor-id=0x%04x; product-id=0x%04x; location-id=0x%08x; uvc-version: 0x%04x"
                  " interface-index: %d%s }",
                  unsigned{vendorId()}, unsigned{productId()}, unsigned{locationId()}, unsigned{uvcVersion()},
                  int{parts_.interface->interfaceNumber()}, isInterfaceOpen_ ? " ; is-open" : "");
    char head[64];
    std::snprintf(head, sizeof head, "UVCController@%p { \"", static_cast<const void *>(this));
    return head + deviceName().value_or("(null)") + ids;
}

const NameMap &UVCController::controlMapping() {
    static const NameMap mapping = [] {
        NameMap rows;
        for (std::size_t row = 0; row < UVCControllerControls.size(); ++row)
            rows.emplace(UVCControllerControls[row].name, row);
        return rows;
    }();
    return mapping;
}

const NameMap &UVCController::terminalControlEnableMapping() {
    static const NameMap mapping = enableMappingOf(uvc::kCameraTerminal);
    return mapping;
}

const NameMap &UVCController::processingUnitControlEnableMapping() {
    static const NameMap mapping = enableMappingOf(uvc::kProcessingUnit);
    return mapping;
}

std::size_t UVCController::controlIndexForString(std::string_view name) {
    const auto row = controlMapping().find(name);
    return row == controlMapping().end() ? kUnknownControl : row->second;
}

const std::vector<std::string> &UVCController::controlStrings() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const auto &[name, row] : controlMapping()) all.emplace_back(name);
        return all;
    }();
    return names;
}

bool UVCController::controlIsNotAvailable(std::string_view name) const {
    const std::size_t index = controlIndexForString(name);
    if (index == kUnknownControl) return true;

    const usb::VideoControlDescriptors &descriptors = parts_.descriptors;
    switch (UVCControllerControls[index].unitKind) {
        case uvc::kCameraTerminal:
            return !isEnabled(descriptors.terminalBitmap, terminalControlEnableMapping(), name);
        case uvc::kProcessingUnit:
            return !isEnabled(descriptors.processingUnitBitmap, processingUnitControlEnableMapping(), name);
        default:
            return true;
    }
}

std::shared_ptr<UVCControl> UVCController::controlWithName(std::string_view name) {
    auto cached = controls_.find(name);
    if (cached == controls_.end()) {
        const std::size_t index = controlIndexForString(name);
        if (index == kUnknownControl) return nullptr;  // never remembered: any text may be asked for

        std::unique_ptr<UVCControl> control;
        if (!controlIsNotAvailable(name))
            control = UVCControl::initControlWithName(std::string(name), *this, index);
        cached = controls_.emplace(name, std::move(control)).first;
    }
    if (!cached->second) return nullptr;

    // Shares the controller's ownership: whoever holds a control holds its device, and there is no cycle.
    return {shared_from_this(), cached->second.get()};
}

bool UVCController::capabilities(std::uint32_t &capabilities, std::size_t controlIndex) {
    if (controlIndex >= UVCControllerControls.size()) return false;

    const uvc::CatalogueRow &row = UVCControllerControls[controlIndex];
    std::uint8_t info = 0;
    if (!getData(&info, kGetInfo, sizeof info, row.selector, row.unitKind)) return false;
    capabilities = info;
    return true;
}

bool UVCController::getValue(UVCValue &value, std::size_t controlIndex) {
    return readValue(value, kGetCur, controlIndex);
}

bool UVCController::readValue(UVCValue &value, std::uint8_t request, std::size_t controlIndex) {
    if (controlIndex >= UVCControllerControls.size()) return false;

    const uvc::CatalogueRow &row = UVCControllerControls[controlIndex];
    value.byteSwapHostToUSBEndian();
    const bool done = getData(value.valuePtr(), request, static_cast<std::uint16_t>(value.byteSize()),
                              row.selector, row.unitKind);
    value.byteSwapUSBToHostEndian();
    return done;
}

bool UVCController::setValue(UVCValue &value, std::size_t controlIndex) {
    if (controlIndex >= UVCControllerControls.size()) return false;

    const uvc::CatalogueRow &row = UVCControllerControls[controlIndex];
    value.byteSwapHostToUSBEndian();
    const bool done =
        setData(value.valuePtr(), static_cast<std::uint16_t>(value.byteSize()), row.selector, row.unitKind);
    value.byteSwapUSBToHostEndian();
    return done;
}

void UVCController::getLowValue(std::shared_ptr<UVCValue> &lowValue, std::shared_ptr<UVCValue> &highValue,
                                std::shared_ptr<UVCValue> &stepSize, std::shared_ptr<UVCValue> &defaultValue,
                                std::uint32_t &capabilities, std::size_t controlIndex) {
    if (lowValue && highValue) {
        if (fillSlot(lowValue, kGetMin, controlIndex) && fillSlot(highValue, kGetMax, controlIndex)) {
            capabilities |= kRangeCapability;
        } else {
            lowValue.reset();
            highValue.reset();
        }
    }
    if (fillSlot(stepSize, kGetRes, controlIndex)) capabilities |= kStepCapability;
    if (fillSlot(defaultValue, kGetDef, controlIndex)) capabilities |= kDefaultCapability;
}

bool UVCController::fillSlot(std::shared_ptr<UVCValue> &slot, std::uint8_t request,
                             std::size_t controlIndex) {
    if (!slot) return false;
    if (readValue(*slot, request, controlIndex)) return true;
    slot.reset();
    return false;
}

usb::SetupPacket UVCController::setupPacket(std::uint8_t requestType, std::uint8_t request,
                                            std::uint16_t length, std::uint32_t selector,
                                            std::uint32_t unitId) const {
    usb::SetupPacket setup;
    setup.requestType = requestType;
    setup.request = request;
    setup.value = static_cast<std::uint16_t>(selector << 8);
    // Callers give the catalogue's unit kind, 1 or 2, as the unit id; the ids in the device's descriptors are
    // not used. This fixed mapping is wanted.
    setup.index = static_cast<std::uint16_t>((unitId << 8) | parts_.interface->interfaceNumber());
    setup.length = length;
    return setup;
}

bool UVCController::getData(void *buffer, std::uint8_t type, std::uint16_t length, std::uint32_t selector,
                            std::uint32_t unitId) {
    // Whatever a failed transfer leaves behind must not reach the caller's value.
    std::vector<std::uint8_t> answer(length);
    if (!sendControlRequest(setupPacket(kGetRequestType, type, length, selector, unitId), answer))
        return false;

    std::copy(answer.begin(), answer.end(), static_cast<std::uint8_t *>(buffer));
    return true;
}

bool UVCController::setData(const void *buffer, std::uint16_t length, std::uint32_t selector,
                            std::uint32_t unitId) {
    const auto *bytes = static_cast<const std::uint8_t *>(buffer);
    std::vector<std::uint8_t> data(bytes, bytes + length);
    return sendControlRequest(setupPacket(kSetRequestType, kSetCur, length, selector, unitId), data);
}

bool UVCController::sendControlRequest(const usb::SetupPacket &setup, std::span<std::uint8_t> data) {
    const bool wasOpen = isInterfaceOpen_;
    setIsInterfaceOpen(true);
    if (!isInterfaceOpen_) return false;

    const usb::Outcome outcome = parts_.interface->controlRequest(setup, data);
    if (!wasOpen) setIsInterfaceOpen(false);
    return outcome == usb::Outcome::done;
}

void UVCController::setIsInterfaceOpen(bool isInterfaceOpen) {
    if (isInterfaceOpen == isInterfaceOpen_) return;

    const usb::Outcome outcome = isInterfaceOpen ? parts_.interface->open() : parts_.interface->close();
    if (outcome == usb::Outcome::done) isInterfaceOpen_ = isInterfaceOpen;
}
