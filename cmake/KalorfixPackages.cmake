# Debian packages by CPack, one a component: kalorfix, kalorfix-dev and, where it is built, kalorfix-tool. ./package makes them.
set(KALORFIX_DEB_ARCHITECTURE "")
foreach(_pair IN ITEMS "^x86_64-:amd64" "^i.86-:i386" "^aarch64-:arm64" "^arm-.*gnueabihf$:armhf" "^arm-.*gnueabi$:armel"
                       "^riscv64-:riscv64" "^powerpc64le-:ppc64el" "^s390x-:s390x")
  string(REGEX MATCH "^(.*):(.*)$" _ "${_pair}")
  set(_architecture "${CMAKE_MATCH_2}")
  # The compiler's target, not the machine that builds, is what the packages are for.
  if(KALORFIX_TARGET MATCHES "${CMAKE_MATCH_1}")
    set(KALORFIX_DEB_ARCHITECTURE "${_architecture}")
  endif()
endforeach()
if(NOT KALORFIX_DEB_ARCHITECTURE)
  message(STATUS "No Debian architecture for ${KALORFIX_TARGET}: no packages")
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kalorfix)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${KALORFIX_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL ${KALORFIX_COMPONENTS})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE "${KALORFIX_DEB_ARCHITECTURE}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

# CPack 3.25 has no variable for the field Multi-Arch: it follows the section as a line of its own.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME kalorfix)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION "libs\nMulti-Arch: same")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "flow of gas, water and steam: library
kalorfix.so computes flow, density and heat of natural gas, water and steam
from what transmitters measure, for the runtime of a controller. gas.dat holds
the constants of the methods by composition.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/debian/triggers")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME kalorfix-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION "libdevel\nMulti-Arch: same")
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "kalorfix (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEV_DESCRIPTION "flow of gas, water and steam: development files
Headers, CMake and pkg-config files, manual and examples for programs that use
kalorfix.so.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME kalorfix-tool)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION science)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "kalorfix (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOL_DESCRIPTION "flow of gas, water and steam: command-line tool
kalorfix opens kalorfix.so as a controller does: states of gas, water, steam,
runs of stations, and a report that compares every published value.")

# What the built files need of other packages is read from them when the packages are made.
set(_tool_file "")
if(KALORFIX_TOOL)
  set(_tool_file "$<TARGET_FILE:kalorfix_tool>")
endif()
file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/DebianDepends.cmake" CONTENT "set(_readelf \"${CMAKE_READELF}\")
set(_runtime_file \"$<TARGET_FILE:kalorfix>\")
set(_tool_file \"${_tool_file}\")
include(\"${PROJECT_SOURCE_DIR}/cmake/DebianDepends.cmake\")
")
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_BINARY_DIR}/DebianDepends.cmake")
include(CPack)
