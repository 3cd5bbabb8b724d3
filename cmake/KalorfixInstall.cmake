# What an installation holds, by component: runtime (library, gas data), tool, dev (headers, CMake and pkg-config files).
option(KALORFIX_MULTIARCH "Install the library into lib/<triplet>, as Debian's packages do" OFF)
if(KALORFIX_MULTIARCH AND CMAKE_LIBRARY_ARCHITECTURE)
  set(CMAKE_INSTALL_LIBDIR "lib/${CMAKE_LIBRARY_ARCHITECTURE}")
endif()
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(_share "${CMAKE_INSTALL_DATADIR}/kalorfix")
set(_doc "${CMAKE_INSTALL_DATADIR}/doc")
set(_cmake "${CMAKE_INSTALL_LIBDIR}/cmake/kalorfix")

# The debug information of the build serves the comparison of the binary interface; it stays there.
install(CODE "set(CMAKE_INSTALL_DO_STRIP TRUE)" ALL_COMPONENTS)

# Compressed as Debian wants its pages and changelogs: no name, no time.
find_program(KALORFIX_GZIP gzip)
set(_compressed "")
# Sets `result` to the compressed copy of a file, made by the build, or to the file itself where there is no gzip.
function(kalorfix_compress file name result)
  if(NOT KALORFIX_GZIP)
    set(${result} "${file}" PARENT_SCOPE)
    return()
  endif()
  set(output "${PROJECT_BINARY_DIR}/compressed/${name}.gz")
  add_custom_command(
    OUTPUT "${output}"
    COMMAND "${KALORFIX_GZIP}" -9nc "${file}" > "${output}"
    DEPENDS "${file}"
    VERBATIM)
  set(${result} "${output}" PARENT_SCOPE)
  set(_compressed "${_compressed};${output}" PARENT_SCOPE)
endfunction()
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/compressed")

# runtime
install(
  TARGETS kalorfix
  EXPORT kalorfixTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
if(TARGET gas_data)
  install(FILES "${KALORFIX_GAS_DAT}" DESTINATION "${_share}" COMPONENT runtime)
endif()
set(KALORFIX_COMPONENTS runtime dev)

# dev
install(FILES include/kalorfix.h include/kalorfix_calculators.h include/kalorfix_gas.h include/kalorfix_runtime.h
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT dev)
install(EXPORT kalorfixTargets NAMESPACE kalorfix:: DESTINATION "${_cmake}" COMPONENT dev)
configure_package_config_file(
  cmake/kalorfixConfig.cmake.in "${PROJECT_BINARY_DIR}/kalorfixConfig.cmake"
  INSTALL_DESTINATION "${_cmake}"
  PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/kalorfixConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/kalorfixConfig.cmake" "${PROJECT_BINARY_DIR}/kalorfixConfigVersion.cmake"
        DESTINATION "${_cmake}" COMPONENT dev)
set(_root "${CMAKE_INSTALL_PREFIX}")
file(RELATIVE_PATH _pc_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${_root}")
string(REGEX REPLACE "/$" "" _pc_prefix "${_pc_prefix}")
file(RELATIVE_PATH _pc_libdir "${_root}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH _pc_includedir "${_root}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
file(RELATIVE_PATH _pc_datadir "${_root}" "${CMAKE_INSTALL_FULL_DATADIR}")
configure_file(cmake/kalorfix.pc.in "${PROJECT_BINARY_DIR}/kalorfix.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kalorfix.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)
file(GLOB _documents "${PROJECT_SOURCE_DIR}/docs/*.md" "${PROJECT_SOURCE_DIR}/README*.md")
install(FILES ${_documents} CHANGELOG.md DESTINATION "${_doc}/kalorfix-dev" COMPONENT dev)
install(DIRECTORY examples/ DESTINATION "${_doc}/kalorfix-dev/examples" COMPONENT dev FILES_MATCHING PATTERN "*.c")

# tool, with what its report and its demonstration are made of
if(KALORFIX_TOOL)
  list(APPEND KALORFIX_COMPONENTS tool)
  install(TARGETS kalorfix_tool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tool)
  install(FILES tools/completion/kalorfix DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tool)
  install(DIRECTORY tests/cases/ DESTINATION "${_share}/cases" COMPONENT tool FILES_MATCHING PATTERN "*.txt")
  install(FILES docs/deviations.md docs/not_verified.md DESTINATION "${_share}" COMPONENT tool)
  install(DIRECTORY examples/ DESTINATION "${_share}/examples" COMPONENT tool PATTERN "*.c" EXCLUDE)
endif()

# Manual pages of the tool (section 1) and of the library (section 3).
foreach(_page IN ITEMS "1 tool" "3 dev")
  separate_arguments(_page)
  list(GET _page 0 _section)
  list(GET _page 1 _component)
  set(_file "${PROJECT_SOURCE_DIR}/docs/man/kalorfix.${_section}")
  if(EXISTS "${_file}" AND _component IN_LIST KALORFIX_COMPONENTS)
    kalorfix_compress("${_file}" "kalorfix.${_section}" _file)
    install(FILES "${_file}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man${_section}" COMPONENT "${_component}")
  endif()
endforeach()

# Every package carries licence and changelog under its own name.
set(KALORFIX_MAINTAINER "The kalorfix maintainers <maintainers@kalorfix.invalid>" CACHE STRING "Maintainer of the packages")
include(cmake/DebianChangelog.cmake)
kalorfix_debian_changelog("${PROJECT_SOURCE_DIR}/CHANGELOG.md" "${PROJECT_BINARY_DIR}/changelog")
kalorfix_compress("${PROJECT_BINARY_DIR}/changelog" changelog _changelog)
foreach(_component IN LISTS KALORFIX_COMPONENTS)
  set(KALORFIX_PACKAGE_${_component} "kalorfix-${_component}")
  if(_component STREQUAL "runtime")
    set(KALORFIX_PACKAGE_${_component} kalorfix)
  endif()
  set(_own "${_doc}/${KALORFIX_PACKAGE_${_component}}")
  install(FILES LICENSE DESTINATION "${_own}" RENAME copyright COMPONENT "${_component}")
  install(FILES "${_changelog}" DESTINATION "${_own}" COMPONENT "${_component}")
endforeach()
if(_compressed)
  add_custom_target(compressed_documents ALL DEPENDS ${_compressed})
endif()

include(cmake/KalorfixPackages.cmake)

string(REPLACE ";" " " _emulator "${CMAKE_CROSSCOMPILING_EMULATOR}")
configure_file(tests/package/settings.sh.in "${PROJECT_BINARY_DIR}/package_settings.sh" @ONLY)
# A program would have to load the sanitizers before such a library.
if(KALORFIX_TESTS AND NOT KALORFIX_SANITIZE)
  add_test(NAME package.install COMMAND sh "${PROJECT_SOURCE_DIR}/tests/package/install_test.sh" "${PROJECT_BINARY_DIR}")
endif()
