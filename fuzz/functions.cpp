// The six functions with a camera whose every answer and outcome comes from the input: they end, their texts
// have the shape that is cut up later, and what was opened is closed.
#include "fuzz/scripted_camera.h"
#include "ptz/ptz_functions.h"
#include "support/listed_devices.h"
#include "uvc/uvc_controller.h"

namespace {

std::size_t commas(const std::string &text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), ','));
}

void call(fuzz::Input &input) {
    switch (input.byte() % 6) {
        case 0:
            if (const auto text = getPanTiltPosition())
                fuzz::promise(*text == ptz::kUnreadablePosition || commas(*text) == 1,
                              "a position is a pair");
            break;
        case 1: {
            const std::int32_t pan = input.number();
            (void)setPanTiltPosition(pan, input.number());
            break;
        }
        case 2:
            if (const auto text = getZoomPosition())
                fuzz::promise(*text == ptz::kUnreadablePosition || commas(*text) == 0,
                              "a zoom is one number");
            break;
        case 3:
            (void)setZoomPosition(input.number());
            break;
        case 4:
            if (const auto text = getPanTiltData()) fuzz::promise(commas(*text) == 7, "eight pieces");
            break;
        default:
            if (const auto text = getZoomData()) fuzz::promise(commas(*text) == 3, "four pieces");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto state = std::make_shared<fuzz::Camera::State>();
    state->input = &input;
    // Both units with all their controls, or what the input says.
    state->descriptors =
        input.flag() ? input.bytes(input.byte())
                     : std::vector<std::uint8_t>{13, 0x24, 1,  0x10, 0x01, 43, 0,    0,    0,    0,  0,
                                                 1,  1,    18, 0x24, 2,    1,  1,    2,    0,    0,  0,
                                                 0,  0,    0,  0,    0,    3,  0xFF, 0xFF, 0xFF, 12, 0x24,
                                                 5,  2,    1,  0,    0,    3,  0xFF, 0xFF, 0xFF, 0};
    UVCController::useDeviceRegistry(support::listing({{std::make_shared<fuzz::Camera>(state)}}));
    for (int calls = 0; calls < 8 && !input.isUsedUp(); ++calls) {
        call(input);
        fuzz::promise(state->open == 0, "what was opened is closed");
    }
    UVCController::useDeviceRegistry(nullptr);
    return 0;
}
