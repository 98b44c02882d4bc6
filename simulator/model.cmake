zel_library(simulator
    SOURCES
        camera_controls.cpp
        camera_descriptors.cpp
        camera_model.cpp
        motor.cpp
        simulated_registry.cpp
    LINKS model usb)
