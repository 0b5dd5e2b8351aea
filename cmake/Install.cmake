# Installs one of the libraries with what a consumer needs to find it: the
# headers (one set, shared by both libraries), its CMake package
# (find_package(NAME), target KzBasicServices::NAME) and NAME.pc for
# pkg-config. The package's config file and the .pc file are made from
# cmake/NAMEConfig.cmake.in and cmake/NAME.pc.in.
include(CMakePackageConfigHelpers)

# The pkg-config files find their prefix from where they lie, and a library
# outside the linker's own folders gets an rpath in the consumer. A library in
# a system folder (a distribution's package) names its prefix plainly, so
# pkg-config leaves out the -L the linker does not need.
if(CMAKE_INSTALL_FULL_LIBDIR IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
  set(KZBS_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
  set(KZBS_PC_RPATH "")
else()
  file(RELATIVE_PATH KZBS_PC_TO_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
  string(REGEX REPLACE "/$" "" KZBS_PC_TO_PREFIX "${KZBS_PC_TO_PREFIX}")
  set(KZBS_PC_PREFIX "\${pcfiledir}/${KZBS_PC_TO_PREFIX}")
  set(KZBS_PC_RPATH "-Wl,-rpath,\${libdir} ")
endif()

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KzBasicServices
        FILES_MATCHING PATTERN "*.h")

function(kzbs_install_library name)
  set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
  install(TARGETS ${name} EXPORT ${name}Targets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
          INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/KzBasicServices)
  install(EXPORT ${name}Targets NAMESPACE KzBasicServices:: DESTINATION ${package_dir})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/${name}Config.cmake.in
          ${PROJECT_BINARY_DIR}/${name}Config.cmake
          INSTALL_DESTINATION ${package_dir})
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/${name}ConfigVersion.cmake
          COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/${name}Config.cmake
                ${PROJECT_BINARY_DIR}/${name}ConfigVersion.cmake
          DESTINATION ${package_dir})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
