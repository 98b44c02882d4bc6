#include "usb/libusb/libusb_video_control.h"

#include <span>
#include <utility>

#include "usb/libusb/libusb_outcome.h"

namespace usb {

namespace {

/// Interface class and subclass (USB Video Class 1.1, appendixes A.1 and A.2).
constexpr std::uint8_t kVideoClass = 14;
constexpr std::uint8_t kVideoControlSubclass = 1;

/// A pointer and a count of libusb's, either of which may be nothing.
template <typename Element, typename Count>
std::span<const Element> listOf(const Element *first, Count count) {
    if (first == nullptr || count <= 0) return {};
    return {first, static_cast<std::size_t>(count)};
}

const libusb_interface_descriptor *findVideoControlSetting(const libusb_config_descriptor &config) {
    for (const libusb_interface &interface : listOf(config.interface, config.bNumInterfaces))
        for (const libusb_interface_descriptor &setting :
             listOf(interface.altsetting, interface.num_altsetting))
            if (setting.bInterfaceClass == kVideoClass && setting.bInterfaceSubClass == kVideoControlSubclass)
                return &setting;
    return nullptr;
}

std::vector<std::uint8_t> classDescriptorsOf(const libusb_interface_descriptor &setting) {
    const auto extra = listOf(setting.extra, setting.extra_length);
    std::vector<std::uint8_t> bytes(extra.begin(), extra.end());
    if (!bytes.empty()) return bytes;

    // Some devices put the block behind the endpoint descriptor, where libusb files it under the endpoint.
    for (const libusb_endpoint_descriptor &endpoint : listOf(setting.endpoint, setting.bNumEndpoints)) {
        const auto misplaced = listOf(endpoint.extra, endpoint.extra_length);
        bytes.insert(bytes.end(), misplaced.begin(), misplaced.end());
    }
    return bytes;
}

}  // namespace

LibusbVideoControl::LibusbVideoControl(LibusbDeviceRef device, std::uint8_t configuration,
                                       std::uint8_t interfaceNumber,
                                       std::vector<std::uint8_t> classDescriptors)
    : device_(std::move(device)),
      configuration_(configuration),
      interfaceNumber_(interfaceNumber),
      classDescriptors_(std::move(classDescriptors)) {}

LibusbVideoControl::~LibusbVideoControl() {
    giveBack();
}

Outcome LibusbVideoControl::open() {
    if (claimed_) return Outcome::done;

    if (!handle_) {
        libusb_device_handle *handle = nullptr;
        const Outcome opened = outcomeOf(libusb_open(device_.get(), &handle));
        if (opened != Outcome::done) return opened;
        handle_.reset(handle);
    }

    // A driver that holds the interface stays: detaching it would end the picture of whatever program is
    // streaming. The claim comes first because a request to a held interface fails with no more than an I/O
    // error.
    const Outcome claimed = outcomeOf(libusb_claim_interface(handle_.get(), interfaceNumber_));
    if (claimed == Outcome::disconnected) handle_.reset();
    claimed_ = claimed == Outcome::done;
    return claimed;
}

Outcome LibusbVideoControl::close() {
    giveBack();
    return Outcome::done;
}

Outcome LibusbVideoControl::controlRequest(const SetupPacket &setup, std::span<std::uint8_t> data) {
    if (!claimed_ || setup.length != data.size()) return Outcome::failed;
    const int moved = libusb_control_transfer(handle_.get(), setup.requestType, setup.request, setup.value,
                                              setup.index, data.data(), setup.length, kRequestTimeout);
    return transferOutcome(moved, setup.length);
}

void LibusbVideoControl::giveBack() {
    if (!claimed_) return;
    claimed_ = false;
    // A release can only fail where the device is gone; letting go of the node then gives up the claim as
    // well.
    if (libusb_release_interface(handle_.get(), interfaceNumber_) != LIBUSB_SUCCESS) handle_.reset();
}

std::unique_ptr<LibusbVideoControl> findVideoControl(const LibusbDeviceRef &device) {
    libusb_config_descriptor *raw = nullptr;
    if (libusb_get_active_config_descriptor(device.get(), &raw) != LIBUSB_SUCCESS) return nullptr;
    const LibusbConfig config(raw);

    const libusb_interface_descriptor *setting = findVideoControlSetting(*config);
    if (setting == nullptr) return nullptr;

    return std::make_unique<LibusbVideoControl>(device, config->bConfigurationValue,
                                                setting->bInterfaceNumber, classDescriptorsOf(*setting));
}

}  // namespace usb
