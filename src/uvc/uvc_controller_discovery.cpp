// How controllers come to be: the registry's devices, and the checks that a device has to pass.

#include <utility>

#include "uvc/uvc_control.h"
#include "uvc/uvc_controller.h"

namespace {

using Service = std::shared_ptr<const usb::Device>;

std::shared_ptr<const usb::DeviceRegistry> &registry() {
    static std::shared_ptr<const usb::DeviceRegistry> installed;
    return installed;
}

std::vector<Service> services() {
    if (!registry()) return {};
    return registry()->devices().value_or(std::vector<Service>{});
}

/// What picks devices out of the registry's list.
constexpr auto kEvery = [](const usb::Device &) { return true; };

/// The controllers of the devices that `matches`; nothing when there are none.
template <typename Matches>
std::optional<std::vector<std::shared_ptr<UVCController>>> allControllers(Matches matches) {
    std::vector<std::shared_ptr<UVCController>> controllers;
    for (const Service &service : services()) {
        if (!service || !matches(*service)) continue;
        if (auto controller = UVCController::uvcControllerWithService(service))
            controllers.push_back(std::move(controller));
    }
    if (controllers.empty()) return std::nullopt;
    return controllers;
}

/// The first device that `matches`, whether or not it will make a controller.
template <typename Matches>
std::shared_ptr<UVCController> firstController(Matches matches) {
    for (const Service &service : services())
        if (service && matches(*service)) return UVCController::uvcControllerWithService(service);
    return nullptr;
}

}  // namespace

void UVCController::useDeviceRegistry(std::shared_ptr<const usb::DeviceRegistry> newRegistry) {
    registry() = std::move(newRegistry);
}

std::optional<std::vector<std::shared_ptr<UVCController>>> UVCController::uvcControllers() {
    return allControllers(kEvery);
}

std::optional<std::vector<std::shared_ptr<UVCController>>> UVCController::uvcControllersWithIds(
    bool (*wanted)(std::uint16_t vendorId, std::uint16_t productId)) {
    return allControllers([wanted](const usb::Device &device) {
        const auto vendorId = device.vendorId();
        const auto productId = device.productId();
        return vendorId && productId && wanted(*vendorId, *productId);
    });
}

std::shared_ptr<UVCController> UVCController::uvcControllerWithService(const Service &service) {
    if (!service) return nullptr;
    return initWithLocationId(service->locationId().value_or(kUnknownLocationId),
                              service->vendorId().value_or(kUnknownId),
                              service->productId().value_or(kUnknownId), service);
}

std::shared_ptr<UVCController> UVCController::uvcControllerWithLocationId(std::uint32_t locationId) {
    return firstController(
        [locationId](const usb::Device &device) { return device.locationId() == locationId; });
}

std::shared_ptr<UVCController> UVCController::uvcControllerWithVendorId(std::uint16_t vendorId,
                                                                        std::uint16_t productId) {
    return firstController([vendorId, productId](const usb::Device &device) {
        return device.vendorId() == vendorId && device.productId() == productId;
    });
}

std::shared_ptr<UVCController> UVCController::initWithLocationId(std::uint32_t locationId,
                                                                 std::uint16_t vendorId,
                                                                 std::uint16_t productId,
                                                                 const Service &service) {
    if (!service) return nullptr;
    auto interface = service->videoControl();
    if (!interface) return nullptr;
    auto descriptors = usb::parseVideoControlDescriptors(interface->classDescriptors());
    if (!descriptors) return nullptr;

    Parts parts;
    parts.service = service;
    parts.interface = std::move(interface);
    parts.locationId = locationId;
    parts.vendorId = vendorId;
    parts.productId = productId;
    parts.descriptors = std::move(*descriptors);
    return std::make_shared<UVCController>(Checked(), std::move(parts));
}
