# SPDX-License-Identifier: MIT
# What an installation holds, by component: runtime (library, gas data), tool, dev (headers, CMake and pkg-config files).
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(_share "${CMAKE_INSTALL_DATADIR}/kalorfix")
set(_doc "${CMAKE_INSTALL_DATADIR}/doc")
set(_cmake "${CMAKE_INSTALL_LIBDIR}/cmake/kalorfix")

# runtime
install(
  TARGETS kalorfix
  EXPORT kalorfixTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
if(TARGET gas_data)
  install(FILES "${KALORFIX_GAS_DAT}" DESTINATION "${_share}" COMPONENT runtime)
endif()
install(FILES LICENSE DESTINATION "${_doc}/kalorfix" RENAME copyright COMPONENT runtime)

# dev
install(FILES include/kalorfix.h include/kalorfix_calculators.h include/kalorfix_gas.h include/kalorfix_runtime.h
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT dev)
install(EXPORT kalorfixTargets NAMESPACE kalorfix:: DESTINATION "${_cmake}" COMPONENT dev)
configure_package_config_file(
  cmake/kalorfixConfig.cmake.in "${PROJECT_BINARY_DIR}/kalorfixConfig.cmake"
  INSTALL_DESTINATION "${_cmake}"
  PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/kalorfixConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/kalorfixConfig.cmake" "${PROJECT_BINARY_DIR}/kalorfixConfigVersion.cmake"
        DESTINATION "${_cmake}" COMPONENT dev)
# From the pkg-config file to the prefix and on, so that the whole may be moved.
set(_root "${CMAKE_INSTALL_PREFIX}")
file(RELATIVE_PATH _pc_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${_root}")
string(REGEX REPLACE "/$" "" _pc_prefix "${_pc_prefix}")
file(RELATIVE_PATH _pc_libdir "${_root}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH _pc_includedir "${_root}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
file(RELATIVE_PATH _pc_datadir "${_root}" "${CMAKE_INSTALL_FULL_DATADIR}")
configure_file(cmake/kalorfix.pc.in "${PROJECT_BINARY_DIR}/kalorfix.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kalorfix.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)
install(FILES docs/man/kalorfix.3 DESTINATION "${CMAKE_INSTALL_MANDIR}/man3" COMPONENT dev)
file(GLOB _readmes "${PROJECT_SOURCE_DIR}/README*.md")
install(FILES ${_readmes} CHANGELOG.md DESTINATION "${_doc}/kalorfix-dev" COMPONENT dev)
install(DIRECTORY docs DESTINATION "${_doc}/kalorfix-dev" COMPONENT dev
        FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN man EXCLUDE)
install(DIRECTORY examples/ DESTINATION "${_doc}/kalorfix-dev/examples" COMPONENT dev FILES_MATCHING PATTERN "*.c")
install(FILES LICENSE DESTINATION "${_doc}/kalorfix-dev" RENAME copyright COMPONENT dev)

# tool, with what its report and its demonstration are made of
if(KALORFIX_TOOL)
  install(TARGETS kalorfix_tool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
  if(TARGET manual_page)
    install(FILES "${PROJECT_BINARY_DIR}/kalorfix.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tool)
  endif()
  install(FILES tools/completion/kalorfix DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tool)
  install(DIRECTORY tests/cases/ DESTINATION "${_share}/cases" COMPONENT tool FILES_MATCHING PATTERN "*.txt")
  install(FILES docs/deviations.md docs/not_verified.md DESTINATION "${_share}" COMPONENT tool)
  install(FILES docs/ru/deviations.md docs/ru/not_verified.md DESTINATION "${_share}/ru" COMPONENT tool)
  install(DIRECTORY examples/ DESTINATION "${_share}/examples" COMPONENT tool PATTERN "*.c" EXCLUDE)
  # The licence of the parser of commands wants to be handed on with it.
  file(READ LICENSE _licence)
  file(READ tools/cli11_licence.txt _cli11)
  file(WRITE "${PROJECT_BINARY_DIR}/copyright" "${_licence}\n${_cli11}")
  install(FILES "${PROJECT_BINARY_DIR}/copyright" DESTINATION "${_doc}/kalorfix-tool" COMPONENT tool)
endif()

# A program would have to load the sanitizers before such a library.
if(KALORFIX_TESTS AND NOT KALORFIX_SANITIZE)
  add_test(NAME package.install COMMAND sh "${PROJECT_SOURCE_DIR}/tests/package/prefix_test.sh" "${PROJECT_BINARY_DIR}")
endif()
