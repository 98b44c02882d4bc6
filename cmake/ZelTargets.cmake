# Compiler settings shared by every target, and the functions that make one.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(zel_build_settings INTERFACE)
# Fused multiply-add would change the rounding of scanned values between processors.
target_compile_options(zel_build_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Werror -ffp-contract=off)

# MOC: the sources declare classes with Q_OBJECT. Looking for them everywhere would make a third of all build steps.

# zel_library(NAME [MOC] SOURCES ... [LINKS ...]): one folder, one library.
function(zel_library name)
    cmake_parse_arguments(ARG "MOC" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC "${ARG_MOC}")
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}")
    target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)
    target_link_libraries(${name} PRIVATE zel_build_settings PUBLIC ${ARG_LINKS})
endfunction()

# zel_program(NAME SOURCES ... [LINKS ...]): a program that people start.
function(zel_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE zel_build_settings ${ARG_LINKS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/${ZEL_BUILT_PROGRAMS}")
endfunction()

# zel_test(NAME [MOC] SOURCES ... [LINKS ...] [MAIN_LIBRARY lib]): one gtest program whose cases CTest lists one by one.
# MAIN_LIBRARY replaces GTest::gtest_main where the tests need their own main (a QApplication, say).
function(zel_test name)
    cmake_parse_arguments(ARG "MOC" "MAIN_LIBRARY" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC "${ARG_MOC}")
    if(NOT ARG_MAIN_LIBRARY)
        set(ARG_MAIN_LIBRARY GTest::gtest_main)
    endif()
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE zel_build_settings ${ARG_LINKS} ${ARG_MAIN_LIBRARY})
    gtest_discover_tests(${name} PROPERTIES TIMEOUT 120 DISCOVERY_TIMEOUT 60)
endfunction()
