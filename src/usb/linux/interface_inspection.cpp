#include "usb/linux/interface_inspection.h"

#include <memory>
#include <utility>

#include "usb/linux/linux_video_control.h"
#include "usb/linux/program_scan.h"
#include "usb/v4l2/video_node.h"

namespace usb {

namespace {

/// By the name of the interface's driver in sysfs; empty: it has none.
Holder holderOf(const std::string &driver) {
    if (driver.empty()) return Holder::nobody;
    if (driver == "uvcvideo") return Holder::cameraDriver;
    return driver == "usbfs" ? Holder::program : Holder::otherDriver;
}

/// A device and its VideoControl interface.
struct Found {
    LibusbDevice device;
    std::unique_ptr<LibusbVideoControl> control;
};

std::optional<Found> cameraAt(const LibusbRegistry &registry, std::uint32_t locationId) {
    const auto devices = registry.devices();
    if (!devices) return std::nullopt;
    for (const LibusbDevice &device : *devices) {
        if (device.locationId() != locationId) continue;
        if (auto control = findVideoControl(device.reference())) return Found{device, std::move(control)};
    }
    return std::nullopt;
}

/// What LinuxVideoControl::open() would come to, without a claim.
void tryFile(InterfaceReport &report, const v4l2::SysfsInterface &interface, const std::string &usbFile) {
    if (const auto nodes = interface.videoNodes(); !nodes.empty()) {
        report.backend = Backend::driver;
        const v4l2::NodeSearch search = v4l2::openCaptureNode(nodes);
        report.path = search.path;
        if (report.path.empty()) report.path = nodes.front();
        report.access = search.outcome;
        return;
    }
    // Nobody opens a file of the camera then: the driver itself would make a claim busy.
    if (report.holder == Holder::cameraDriver || report.holder == Holder::otherDriver) {
        report.access = Outcome::busy;
        return;
    }
    report.backend = Backend::direct;
    report.path = usbFile;
    report.access = v4l2::tryToOpen(usbFile);
    if (report.access == Outcome::done && report.holder == Holder::program) report.access = Outcome::busy;
}

}  // namespace

std::optional<InterfaceReport> inspectInterface(const LibusbRegistry &registry, std::uint32_t locationId) {
    const auto camera = cameraAt(registry, locationId);
    if (!camera) return std::nullopt;
    const auto interface = sysfsInterfaceOf(camera->device, *camera->control);
    if (!interface) return std::nullopt;

    InterfaceReport report;
    report.interfaceNumber = camera->control->interfaceNumber();
    report.holderName = interface->driver().value_or(std::string());
    report.holder = holderOf(report.holderName);
    tryFile(report, *interface, usbFileOf(camera->device));
    if (report.path.empty()) return report;

    ProgramScan scan = findProgramsHolding(report.path);
    report.programs = std::move(scan.programs);
    report.sawEveryProgram = scan.sawEveryProgram;
    return report;
}

}  // namespace usb
