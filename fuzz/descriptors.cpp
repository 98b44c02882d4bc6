// A device's class-specific descriptors, and a controller on them: nothing in them is trusted.
#include "fuzz/scripted_camera.h"
#include "uvc/uvc_controller.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::Input none(nullptr, 0);
    const auto state = std::make_shared<fuzz::Camera::State>();
    state->input = &none;
    state->descriptors.assign(data, data + size);
    const auto controller = UVCController::uvcControllerWithService(std::make_shared<fuzz::Camera>(state));
    const auto parsed = usb::parseVideoControlDescriptors(state->descriptors);
    fuzz::promise((controller != nullptr) == parsed.has_value(), "a proper header makes a controller");
    if (!controller) return 0;
    fuzz::promise(controller->uvcVersion() == parsed->uvcVersion, "the version is the header's");
    for (const std::string &name : UVCController::controlStrings())
        fuzz::promise(!controller->controlIsNotAvailable(name) || !controller->controlWithName(name),
                      "what the bitmaps forbid is not offered");
    fuzz::promise(state->open == 0, "no request, nothing left open");
    return 0;
}
