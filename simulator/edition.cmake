# The simulated edition: the product's own window and store code on a camera inside the program.
zel_library(simulator_store SOURCES edition/sample_store.cpp edition/sample_store.h USES scenes)

zel_program(zelvoria-camara-simulada
    SOURCES edition/main.cpp edition/preview_placement.cpp edition/preview_placement.h
    LINKS app platform platform_qt product simulator simulator_preview simulator_store uvc)
install(TARGETS zelvoria-camara-simulada)
install(FILES "${PROJECT_SOURCE_DIR}/packaging/zelvoria-camara-simulada.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES "${PROJECT_SOURCE_DIR}/packaging/man/zelvoria-camara-simulada.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/es/man1")
