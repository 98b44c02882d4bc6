#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "usb/usb.h"
#include "usb/video_control_descriptors.h"
#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_value.h"

class UVCControl;

/// One USB device with a VideoControl interface: its ids, its controls by name, and the requests they are
/// made of.
///
/// The interface is closed at creation. Each request opens it and closes it again, unless it is held open by
/// setIsInterfaceOpen(true). A request blocks until its transfer is over; usb::kRequestTimeout tells how long
/// that may be, and that the kernel's driver may make several transfers of one request. Controllers live in
/// shared pointers; the last user to let go of a controller and of all its controls closes the interface.
class UVCController : public std::enable_shared_from_this<UVCController> {
    struct Checked {};  // only the factories can name it

 public:
    /// \name Discovery
    /// @{

    /// Where all later discovery looks for devices; null takes it away. Until it is set, devices cannot be
    /// enumerated.
    static void useDeviceRegistry(std::shared_ptr<const usb::DeviceRegistry> registry);

    /// All devices with a VideoControl interface, in the registry's order. Nothing, never an empty list, when
    /// there are none or devices cannot be enumerated.
    [[nodiscard]] static std::optional<std::vector<std::shared_ptr<UVCController>>> uvcControllers();
    /// Those of uvcControllers() whose ids are known and `wanted`; no other device costs more than its place
    /// in the registry's list.
    [[nodiscard]] static std::optional<std::vector<std::shared_ptr<UVCController>>> uvcControllersWithIds(
        bool (*wanted)(std::uint16_t vendorId, std::uint16_t productId));
    /// Null when the device has no VideoControl interface with a proper header.
    [[nodiscard]] static std::shared_ptr<UVCController> uvcControllerWithService(
        const std::shared_ptr<const usb::Device> &service);
    /// The first device at this location id; null if there is none, or if it is no UVC device.
    [[nodiscard]] static std::shared_ptr<UVCController> uvcControllerWithLocationId(std::uint32_t locationId);
    /// The first device with both ids; null if there is none, or if it is no UVC device.
    [[nodiscard]] static std::shared_ptr<UVCController> uvcControllerWithVendorId(std::uint16_t vendorId,
                                                                                  std::uint16_t productId);
    /// The device `service` under the given ids. Null when it has no VideoControl interface with a proper
    /// header.
    [[nodiscard]] static std::shared_ptr<UVCController> initWithLocationId(
        std::uint32_t locationId, std::uint16_t vendorId, std::uint16_t productId,
        const std::shared_ptr<const usb::Device> &service);
    /// @}

    /// The parts of a device, as initWithLocationId() has found and checked them.
    struct Parts {
        std::shared_ptr<const usb::Device> service;
        std::unique_ptr<usb::VideoControl> interface;
        std::uint32_t locationId = kUnknownLocationId;
        std::uint16_t vendorId = kUnknownId;
        std::uint16_t productId = kUnknownId;
        usb::VideoControlDescriptors descriptors;
    };

    UVCController(Checked, Parts parts);
    ~UVCController();
    UVCController(const UVCController &) = delete;
    UVCController &operator=(const UVCController &) = delete;

    /// Stand for ids that the registry does not know.
    static constexpr std::uint16_t kUnknownId = 0xFFFF;
    static constexpr std::uint32_t kUnknownLocationId = 0xFFFFFFFF;
    /// Answer for a name that the catalogue does not hold.
    static constexpr std::size_t kUnknownControl = ~std::size_t{0};

    /// As the registry names the device, asked at each call.
    [[nodiscard]] std::optional<std::string> deviceName() const { return parts_.service->registryName(); }
    [[nodiscard]] std::uint32_t locationId() const { return parts_.locationId; }
    [[nodiscard]] std::uint16_t vendorId() const { return parts_.vendorId; }
    [[nodiscard]] std::uint16_t productId() const { return parts_.productId; }
    /// bcdUVC: 0x0110 is version 1.1.
    [[nodiscard]] std::uint16_t uvcVersion() const { return parts_.descriptors.uvcVersion; }
    [[nodiscard]] std::string description() const;

    /// \name Controls (names as in UVCControllerControls: case-sensitive, untrimmed)
    /// @{

    [[nodiscard]] static const std::unordered_map<std::string_view, std::size_t> &controlMapping();
    [[nodiscard]] static const std::unordered_map<std::string_view, std::size_t>
        &terminalControlEnableMapping();
    [[nodiscard]] static const std::unordered_map<std::string_view, std::size_t>
        &processingUnitControlEnableMapping();
    /// kUnknownControl for an unknown name.
    [[nodiscard]] static std::size_t controlIndexForString(std::string_view name);
    /// All names of the catalogue, in no particular order.
    [[nodiscard]] static const std::vector<std::string> &controlStrings();

    /// Whether the device's bitmaps, or the lack of such a name, forbid offering the control.
    [[nodiscard]] bool controlIsNotAvailable(std::string_view name) const;

    /// The control of this name, the same object at every call. Null when it is unknown, or not available, or
    /// did not answer when it was first asked for; the latter two are remembered for the life of the
    /// controller. May block for several requests at the first call. The result keeps this controller alive.
    [[nodiscard]] std::shared_ptr<UVCControl> controlWithName(std::string_view name);
    /// @}

    /// \name Requests (controls are rows of UVCControllerControls; false: refused, unanswered or no such row)
    /// @{

    /// GET_INFO: one byte, into `capabilities`.
    [[nodiscard]] bool capabilities(std::uint32_t &capabilities, std::size_t controlIndex);
    /// GET_CUR into `value`, which ends in host order. On failure its bytes stay as they were.
    [[nodiscard]] bool getValue(UVCValue &value, std::size_t controlIndex);
    /// SET_CUR from `value`, which ends in host order.
    [[nodiscard]] bool setValue(UVCValue &value, std::size_t controlIndex);
    /// Fills the slots that hold a value by GET_MIN and GET_MAX, GET_RES and GET_DEF, and sets the bits 8
    /// (range), 9 (step) and 10 (default) of `capabilities` for those that the device reported. The slots of
    /// the others are emptied; minimum and maximum come only together.
    void getLowValue(std::shared_ptr<UVCValue> &lowValue, std::shared_ptr<UVCValue> &highValue,
                     std::shared_ptr<UVCValue> &stepSize, std::shared_ptr<UVCValue> &defaultValue,
                     std::uint32_t &capabilities, std::size_t controlIndex);

    /// One GET request of code `type`: `length` bytes in wire order into `buffer`, which a failure leaves
    /// untouched.
    [[nodiscard]] bool getData(void *buffer, std::uint8_t type, std::uint16_t length, std::uint32_t selector,
                               std::uint32_t unitId);
    /// One SET_CUR request with `length` bytes in wire order.
    [[nodiscard]] bool setData(const void *buffer, std::uint16_t length, std::uint32_t selector,
                               std::uint32_t unitId);
    /// One control transfer; `data` is filled or sent as the packet says, and unspecified after a failed GET.
    [[nodiscard]] bool sendControlRequest(const usb::SetupPacket &setup, std::span<std::uint8_t> data);

    [[nodiscard]] bool isInterfaceOpen() const { return isInterfaceOpen_; }
    /// Opens or closes the interface if it is not so already. Whether that worked is told by
    /// isInterfaceOpen().
    void setIsInterfaceOpen(bool isInterfaceOpen);
    /// @}

 private:
    /// One GET into `value`; its byte order is the host's again afterwards, whatever the outcome.
    [[nodiscard]] bool readValue(UVCValue &value, std::uint8_t request, std::size_t controlIndex);
    /// readValue() into a slot: empties it on failure.
    [[nodiscard]] bool fillSlot(std::shared_ptr<UVCValue> &slot, std::uint8_t request,
                                std::size_t controlIndex);
    [[nodiscard]] usb::SetupPacket setupPacket(std::uint8_t requestType, std::uint8_t request,
                                               std::uint16_t length, std::uint32_t selector,
                                               std::uint32_t unitId) const;

    Parts parts_;
    bool isInterfaceOpen_ = false;
    std::map<std::string, std::unique_ptr<UVCControl>, std::less<>> controls_;  // null: not available
};
