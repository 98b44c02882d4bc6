zel_library(simulator
    SOURCES
        camera_controls.cpp
        camera_descriptors.cpp
        camera_model.cpp
        camera_units.cpp
        motor.cpp
        simulated_registry.cpp
    LINKS model usb)
