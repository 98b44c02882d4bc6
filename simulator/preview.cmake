zel_library(simulator_preview MOC
    SOURCES
        preview/artwork.cpp
        preview/blackboard.cpp
        preview/front_furniture.cpp
        preview/lecture_room.cpp
        preview/people.cpp
        preview/preview_window.cpp
        preview/preview_window.h
        preview/room_shell.cpp
        preview/side_walls.cpp
        preview/surface.cpp
        preview/tiers.cpp
    LINKS simulator Qt6::Widgets)
