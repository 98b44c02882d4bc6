# The virtual camera behind USB/IP, and the program that offers it. Only what draws knows Qt.
zel_library(simulator_usbip
    SOURCES
        usbip/attachment.cpp
        usbip/command_line.cpp
        usbip/connection.cpp
        usbip/faults.cpp
        usbip/protocol.cpp
        usbip/request_error.cpp
        usbip/server.cpp
        usbip/standard_requests.cpp
        usbip/stream_negotiation.cpp
        usbip/transfer_log.cpp
        usbip/video_stream.cpp
        usbip/virtual_camera.cpp
    LINKS simulator usb)
zel_library(simulator_usbip_picture SOURCES usbip/room_picture.cpp LINKS simulator Qt6::Gui
    USES simulator_preview)

zel_program(zelvoria-camara-virtual
    SOURCES usbip/main.cpp
    LINKS simulator_usbip simulator_usbip_picture)
install(TARGETS zelvoria-camara-virtual)
install(FILES "${PROJECT_SOURCE_DIR}/packaging/man/zelvoria-camara-virtual.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/es/man1")
