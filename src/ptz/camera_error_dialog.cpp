#include "ptz/camera_error_dialog.h"

#include <cstdio>
#include <cstdlib>
#include <tuple>

#include "platform/services.h"

void CameraErrorDialog() {
    std::ignore = platform::services().alerts->run(
        {.messageText = "Error en la comunicación con la cámara",
         .informativeText = "No se detecta la cámara. La aplicación finalizará al pulsar en aceptar",
         .buttons = {"Aceptar"},
         .windowTitle = std::nullopt,
         .fieldText = std::nullopt});

    // Not std::exit: it would destroy static objects while a window is still handling an event.
    std::fflush(nullptr);
    std::_Exit(EXIT_SUCCESS);
}
