# Cross-compiles for Windows x64 with Debian's MinGW-w64 (the POSIX-threads
# variant, which has std::thread and std::mutex), and runs the built programs
# under Wine, so that ctest drives the suite as it does natively:
#
#   cmake -S . -B build-windows -G Ninja -DKZBS_WITH_QT=OFF \
#         -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64-x86_64.cmake
#
# GoogleTest is built from Debian's sources (package googletest) for the
# target; KZBS_GTEST_SOURCE_DIR names them. The programs run through
# scripts/wine-run.sh, which keeps Wine quiet and off the display, in a Wine
# prefix of their own in the build folder.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(KZBS_MINGW x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${KZBS_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${KZBS_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${KZBS_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${KZBS_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# MinGW's GCC does not align the stack for 256- and 512-bit spills (Windows
# guarantees 16 bytes), so the assembler makes every aligned vector move an
# unaligned one: the AVX2, AVX-512 and VAES paths (src/text/LiteralScan.cpp,
# src/crypt/Vaes.cpp) stay safe whatever the optimiser spills. As fast on
# the processors that have those paths.
set(CMAKE_CXX_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")

# The compiler's own runtime (libstdc++, libgcc, winpthread) is linked in
# statically, and every program and DLL lands in one folder, so that the
# programs run from the build tree as they are: Windows finds a DLL beside
# the program that loads it.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run.sh ${CMAKE_BINARY_DIR}/wineprefix)
set(KZBS_GTEST_SOURCE_DIR /usr/src/googletest CACHE PATH "GoogleTest sources, built for the target")
# CLI11 (kzbs's command line) is headers only, so the build host's serve;
# its own CMake package would put all of /usr/include on the path, so a small
# one here names their folder alone.
set(KZBS_CLI11 ${CMAKE_BINARY_DIR}/cli11)
if(NOT EXISTS ${KZBS_CLI11}/include/CLI)
  file(MAKE_DIRECTORY ${KZBS_CLI11}/include)
  file(CREATE_LINK /usr/include/CLI ${KZBS_CLI11}/include/CLI SYMBOLIC)
endif()
file(WRITE ${KZBS_CLI11}/CLI11Config.cmake
  "if(NOT TARGET CLI11::CLI11)\n"
  "  add_library(CLI11::CLI11 INTERFACE IMPORTED)\n"
  "  set_target_properties(CLI11::CLI11 PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${KZBS_CLI11}/include)\n"
  "endif()\n")
set(CLI11_DIR ${KZBS_CLI11} CACHE PATH "CLI11's CMake package" FORCE)
