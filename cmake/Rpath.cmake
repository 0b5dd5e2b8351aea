# Installed programs find the library relative to themselves
# ($ORIGIN/../lib, whatever the prefix), so an installation can be moved and
# needs no LD_LIBRARY_PATH. The build tree's programs use $ORIGIN as well, so a
# build folder keeps working when it is moved or copied.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
file(RELATIVE_PATH KZBS_BIN_TO_LIB "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
set(KZBS_INSTALL_RPATH "$ORIGIN/${KZBS_BIN_TO_LIB}")
