# Picks the Qt major version: KZBS_QT_VERSION=6 or 5; left empty, 6 when Qt 6
# is found, else 5. KZBS_QT names the package (Qt6 or Qt5) for target names
# such as ${KZBS_QT}::Core.
set(KZBS_QT_VERSION "" CACHE STRING "Qt major version to build against: 6 or 5 (empty: 6 when found, else 5)")
set_property(CACHE KZBS_QT_VERSION PROPERTY STRINGS "" 6 5)

if(KZBS_QT_VERSION STREQUAL "")
  find_package(Qt6 6.2 QUIET COMPONENTS Core Gui Widgets)
  if(Qt6_FOUND)
    set(KZBS_QT_VERSION 6 CACHE STRING "" FORCE)
  else()
    set(KZBS_QT_VERSION 5 CACHE STRING "" FORCE)
  endif()
endif()

if(KZBS_QT_VERSION STREQUAL "6")
  find_package(Qt6 6.2 REQUIRED COMPONENTS Core Gui Widgets)
elseif(KZBS_QT_VERSION STREQUAL "5")
  find_package(Qt5 5.11 REQUIRED COMPONENTS Core Gui Widgets)
else()
  message(FATAL_ERROR "KZBS_QT_VERSION must be 6 or 5, not '${KZBS_QT_VERSION}'")
endif()
set(KZBS_QT Qt${KZBS_QT_VERSION})
message(STATUS "KzBasicServices builds against Qt ${${KZBS_QT}Core_VERSION}")
