# Where programs and what they need lie, installed and in the build folder (after GNUInstallDirs).
set(ZEL_COMMANDS_DIR "${CMAKE_INSTALL_LIBEXECDIR}/zelvoria-camara")
set(ZEL_MANUAL_DIR "${CMAKE_INSTALL_DATADIR}/zelvoria-camara")

# A program finds the package's own commands and the manual by their path from its own folder. In the build folder all
# lie as they will lie below the prefix, or below what is above it and all of them, so that one path serves for both.
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE OUTPUT_VARIABLE prefix)
set(base "${prefix}")
foreach(place CMAKE_INSTALL_BINDIR ZEL_COMMANDS_DIR ZEL_MANUAL_DIR)
    cmake_path(ABSOLUTE_PATH ${place} BASE_DIRECTORY "${prefix}" NORMALIZE OUTPUT_VARIABLE full_${place})
    cmake_path(IS_PREFIX base "${full_${place}}" NORMALIZE is_below)
    while(NOT is_below)
        cmake_path(GET base PARENT_PATH base)
        cmake_path(IS_PREFIX base "${full_${place}}" NORMALIZE is_below)
    endwhile()
endforeach()
file(RELATIVE_PATH ZEL_BUILT_PROGRAMS "${base}" "${full_CMAKE_INSTALL_BINDIR}")
file(RELATIVE_PATH ZEL_BUILT_COMMANDS "${base}" "${full_ZEL_COMMANDS_DIR}")
file(RELATIVE_PATH ZEL_BUILT_MANUAL "${base}" "${full_ZEL_MANUAL_DIR}")
file(RELATIVE_PATH ZEL_COMMANDS_FROM_PROGRAM "${full_CMAKE_INSTALL_BINDIR}" "${full_ZEL_COMMANDS_DIR}")
file(RELATIVE_PATH ZEL_MANUAL_FROM_PROGRAM "${full_CMAKE_INSTALL_BINDIR}" "${full_ZEL_MANUAL_DIR}/manual.html")
