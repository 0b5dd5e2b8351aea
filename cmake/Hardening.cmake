# Optimised builds get Debian's hardening flags (what dpkg-buildflags gives
# with hardening=+all): fortified C library calls, the strong stack protector,
# format checks, full RELRO with immediate binding, and PIE for the tool.
# Debian's own package build configures with CMAKE_BUILD_TYPE=None and brings
# the same flags from dpkg-buildflags, so they are not added twice there.
# Debug, sanitizer and fuzzer builds stay as they are: _FORTIFY_SOURCE needs
# optimisation, and the sanitizers check more than it does.
option(KZBS_HARDENING "Release builds use Debian's hardening flags" ON)

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

set(KZBS_OPTIMISED_BUILD_TYPES Release RelWithDebInfo MinSizeRel)
if(KZBS_HARDENING AND CMAKE_BUILD_TYPE IN_LIST KZBS_OPTIMISED_BUILD_TYPES
   AND NOT KZBS_SANITIZE AND NOT KZBS_BUILD_FUZZ)
  add_compile_definitions(_FORTIFY_SOURCE=2)
  add_compile_options(-fstack-protector-strong -Wformat -Werror=format-security)
  if(WIN32) # PE files have no RELRO; MinGW's checks live in libssp
    add_link_options(-fstack-protector-strong)
  else()
    add_link_options(LINKER:-z,relro LINKER:-z,now)
  endif()
  message(STATUS "Hardening: fortify, stack protector, full RELRO, PIE")
endif()
