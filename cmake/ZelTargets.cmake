# Compiler settings shared by every target, and the functions that make one.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
option(ZEL_WARNINGS_AS_ERRORS "A warning of the compiler ends the build" OFF)

add_library(zel_build_settings INTERFACE)
# Fused multiply-add would change the rounding of scanned values between processors.
target_compile_options(zel_build_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -ffp-contract=off
    $<$<BOOL:${ZEL_WARNINGS_AS_ERRORS}>:-Werror>)

# zel_precompiled(NAME HEADERS ... LINKS ... [DEFINITIONS ...] [OPTIONS ...]): headers that are read once for all who use NAME's. They
# are outside ones only, and a user must define whatever NAME defines. lint reads every file without them.
function(zel_precompiled name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LINKS;DEFINITIONS;OPTIONS" ${ARGN})
    file(CONFIGURE OUTPUT ${name}.cpp CONTENT "")
    add_library(${name} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
    target_compile_definitions(${name} PRIVATE ${ARG_DEFINITIONS})
    target_compile_options(${name} PRIVATE ${ARG_OPTIONS})
    target_link_libraries(${name} PRIVATE zel_build_settings ${ARG_LINKS})
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
    # Else clang refuses one from ccache, as older than what it was made of.
    target_compile_options(${name} PRIVATE "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()

set(ZEL_QT_DEFINITIONS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)

# Lets NAME, and with PUBLIC its users, include the headers of its folder as the tree names them ("uvc/uvc_type.h").
# They are links in a folder that holds nothing else, so that a folder that nobody linked cannot be included.
function(zel_show_headers name scope sources links)
    list(GET sources 0 first)
    cmake_path(ABSOLUTE_PATH first NORMALIZE)
    cmake_path(GET first PARENT_PATH folder)
    cmake_path(RELATIVE_PATH folder BASE_DIRECTORY "${PROJECT_SOURCE_DIR}" OUTPUT_VARIABLE path)
    string(REGEX REPLACE "^src/" "" included_as "${path}")
    string(REPLACE "/" "_" visible "${included_as}")
    cmake_path(ABSOLUTE_PATH visible BASE_DIRECTORY "${PROJECT_BINARY_DIR}/visible")

    file(REMOVE_RECURSE "${visible}")
    file(MAKE_DIRECTORY "${visible}/${included_as}")
    file(GLOB headers CONFIGURE_DEPENDS "${folder}/*.h")
    foreach(header IN LISTS headers)
        cmake_path(GET header FILENAME file)
        file(CREATE_LINK "${header}" "${visible}/${included_as}/${file}" SYMBOLIC)
    endforeach()
    target_include_directories(${name} ${scope} "${visible}")
    zel_note_arrows(${name} "${path}" "${sources}" "${links}")
endfunction()

# For tests/tree: which files make a target, and which targets they may include.
function(zel_note_arrows name folder sources links)
    set_property(GLOBAL APPEND_STRING PROPERTY ZEL_ARROWS "${name}|${folder}|${sources}|${links}\n")
endfunction()

# zel_library(NAME [MOC] SOURCES ... [LINKS ...] [USES ...]): one folder, one library.
# LINKS: what the headers of a library include as well, so that its users see it too. USES: what only its other files
# include. Both name every folder of the project that is included: tests/tree refuses what is there by chance.
# MOC: the sources declare classes with Q_OBJECT. Looking for them everywhere would make a third of all build steps.
function(zel_library name)
    cmake_parse_arguments(ARG "MOC" "" "SOURCES;LINKS;USES" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC "${ARG_MOC}")
    zel_show_headers(${name} PUBLIC "${ARG_SOURCES}" "${ARG_LINKS};${ARG_USES}")
    target_compile_definitions(${name} PRIVATE ${ZEL_QT_DEFINITIONS})
    target_link_libraries(${name} PRIVATE zel_build_settings ${ARG_USES} PUBLIC ${ARG_LINKS})
    if("Qt6::Widgets" IN_LIST ARG_LINKS)
        target_precompile_headers(${name} REUSE_FROM qt_headers)
    elseif(TARGET plain_headers AND NOT "${ARG_LINKS};${ARG_USES}" MATCHES "Qt6::")
        target_precompile_headers(${name} REUSE_FROM plain_headers)
    endif()
endfunction()

# zel_configured_library(NAME FILE.h.in): a folder with one header, which takes values from the configuration.
function(zel_configured_library name template)
    cmake_path(GET template STEM LAST_ONLY header)
    configure_file("${template}" "${CMAKE_CURRENT_BINARY_DIR}/generated/${name}/${header}" @ONLY)
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "${CMAKE_CURRENT_BINARY_DIR}/generated")
    zel_note_arrows(${name} "src/${name}" "${template}" "")
endfunction()

# zel_program(NAME SOURCES ... [LINKS ...]): a program that people start.
function(zel_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    zel_show_headers(${name} PRIVATE "${ARG_SOURCES}" "${ARG_LINKS}")
    target_link_libraries(${name} PRIVATE zel_build_settings ${ARG_LINKS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/${ZEL_BUILT_PROGRAMS}")
endfunction()

# A test's own code runs once: to optimise it would take longer than it saves. What it tests is optimised.
set(ZEL_TEST_OPTIONS "$<$<CONFIG:Release,RelWithDebInfo>:-O0>")

# zel_test(NAME [MOC] SOURCES ... [LINKS ...] [MAIN_LIBRARY lib]): one gtest program whose cases CTest lists one by one.
# MAIN_LIBRARY replaces GTest::gtest_main where the tests need their own main (a QApplication, say).
function(zel_test name)
    cmake_parse_arguments(ARG "MOC" "MAIN_LIBRARY" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_compile_options(${name} PRIVATE ${ZEL_TEST_OPTIONS})
    set_target_properties(${name} PROPERTIES AUTOMOC "${ARG_MOC}")
    if(NOT ARG_MAIN_LIBRARY)
        set(ARG_MAIN_LIBRARY GTest::gtest_main)
    endif()
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE zel_build_settings ${ARG_LINKS} ${ARG_MAIN_LIBRARY})
    if(ARG_MAIN_LIBRARY STREQUAL "qt_test_main")
        target_precompile_headers(${name} REUSE_FROM qt_test_headers)
    elseif(TARGET test_headers AND ARG_MAIN_LIBRARY STREQUAL "GTest::gtest_main")
        target_precompile_headers(${name} REUSE_FROM test_headers)
    endif()
    gtest_discover_tests(${name} PROPERTIES TIMEOUT 120 DISCOVERY_TIMEOUT 60)
endfunction()
