# Where programs and the package's own commands lie, under the prefix and in the build folder (after GNUInstallDirs).

# A program finds the package's own commands by their path from its own folder. In the build folder both lie as they
# will lie under the prefix, so that one path serves for both.
set(ZEL_COMMANDS_DIR "${CMAKE_INSTALL_LIBEXECDIR}/zelvoria-camara")
set(commands "${CMAKE_INSTALL_FULL_LIBEXECDIR}/zelvoria-camara")
file(RELATIVE_PATH ZEL_COMMANDS_FROM_PROGRAM "${CMAKE_INSTALL_FULL_BINDIR}" "${commands}")
file(RELATIVE_PATH ZEL_BUILT_PROGRAMS "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_BINDIR}")
file(RELATIVE_PATH ZEL_BUILT_COMMANDS "${CMAKE_INSTALL_PREFIX}" "${commands}")
if("${ZEL_BUILT_PROGRAMS};${ZEL_BUILT_COMMANDS}" MATCHES "(^|;)\\.\\.")
    message(FATAL_ERROR "CMAKE_INSTALL_BINDIR and CMAKE_INSTALL_LIBEXECDIR must lie below CMAKE_INSTALL_PREFIX")
endif()
