# SPDX-License-Identifier: MIT
# kalorfix.so. The objects are a target of their own, so that tests and benchmarks reach what the library hides.
execute_process(
  COMMAND "${CMAKE_CXX_COMPILER}" -dumpmachine
  OUTPUT_VARIABLE KALORFIX_TARGET
  OUTPUT_STRIP_TRAILING_WHITESPACE)
# Those that bear on the numbers; paths would tell one build directory from another.
string(TOUPPER "${CMAKE_BUILD_TYPE}" _build)
string(REGEX REPLACE "-f[a-z]+-prefix-map=[^ ]*|-isystem (\"[^\"]*\"|[^ ]*)" "" KALORFIX_FLAGS
                     "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${_build}} -ffp-contract=off -fno-math-errno")
if(KALORFIX_SANITIZE)
  string(APPEND KALORFIX_FLAGS " -fsanitize=address,undefined")
endif()
string(REGEX REPLACE "[\\\\\"]" "'" KALORFIX_FLAGS "${KALORFIX_FLAGS}")
string(STRIP "${KALORFIX_FLAGS}" KALORFIX_FLAGS)
configure_file(frame/identity.cpp.in "${PROJECT_BINARY_DIR}/identity.cpp" @ONLY)

add_library(
  kalorfix_objects OBJECT
  "${PROJECT_BINARY_DIR}/identity.cpp"
  flow/averaging.cpp
  flow/device.cpp
  flow/discharge.cpp
  flow/edge/flow_rate.cpp
  flow/edge/pipeline.cpp
  flow/edge/totals.cpp
  flow/flow_rate.cpp
  flow/geometry.cpp
  flow/integration.cpp
  flow/material_tables.cpp
  flow/nozzle.cpp
  flow/orifice.cpp
  frame/exports.cpp
  frame/lifecycle.cpp
  gas/aga8.cpp
  gas/aga8_constants.cpp
  gas/composition.cpp
  gas/edge/gas_channel.cpp
  gas/edge/gas_data.cpp
  gas/edge/methods.cpp
  gas/edge/module_state.cpp
  gas/gerg91.cpp
  gas/nx19.cpp
  gas/vnic_smv.cpp
  props/edge/gas_properties.cpp
  props/edge/heat_carrier.cpp
  props/gas_properties.cpp
  props/heat_carrier.cpp
  props/water/density.cpp
  props/water/nonanalytic.cpp
  props/water/residual.cpp
  props/water/saturation.cpp
  props/water/viscosity.cpp
  props/water/water.cpp
  runtime/clock.cpp
  runtime/files.cpp
  runtime/ini_file.cpp
  runtime/ini_values.cpp
  runtime/paths.cpp)
target_include_directories(kalorfix_objects PUBLIC "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/include")
target_link_libraries(kalorfix_objects PRIVATE kalorfix_options)
# errno of libm is never read; without it a square root is one instruction. Nothing in the library throws.
target_compile_options(kalorfix_objects PRIVATE -fno-math-errno $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions>)
target_compile_options(kalorfix_objects PRIVATE "SHELL:-include \"${PROJECT_SOURCE_DIR}/runtime/glibc_floor.h\"")
if(PROJECT_IS_TOP_LEVEL AND NOT KALORFIX_SANITIZE AND NOT EMSCRIPTEN)
  # With what debuggers and the comparison of interfaces want to know; packages keep it apart. The sources may be named from
  # the build directory (a compiler cache does so), and have one name all the same.
  file(RELATIVE_PATH _up "${PROJECT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}")
  target_compile_options(kalorfix_objects PRIVATE -g "-ffile-prefix-map=${_up}=./")
  set_source_files_properties("${PROJECT_BINARY_DIR}/identity.cpp" PROPERTIES COMPILE_OPTIONS -g0)
endif()
set_target_properties(kalorfix_objects PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
                                                  VISIBILITY_INLINES_HIDDEN ON)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # A unique symbol would keep dlclose from unloading the library.
  target_compile_options(kalorfix_objects PRIVATE -fno-gnu-unique)
endif()

if(EMSCRIPTEN)
  return() # the page links the objects
endif()

# The version script is made from the list that the tests compare with the built object.
set(KALORFIX_EXPORT_LIST "${PROJECT_SOURCE_DIR}/frame/exports.list")
set(_version_script "${PROJECT_BINARY_DIR}/kalorfix.map")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${KALORFIX_EXPORT_LIST}")
file(STRINGS "${KALORFIX_EXPORT_LIST}" _exports REGEX "^[^#]")
list(JOIN _exports ";\n    " _exports)
file(CONFIGURE OUTPUT "${_version_script}" CONTENT "{\n  global:\n    ${_exports};\n  local:\n    *;\n};\n")

add_library(kalorfix SHARED)
add_library(kalorfix::kalorfix ALIAS kalorfix)
target_sources(kalorfix PRIVATE $<TARGET_OBJECTS:kalorfix_objects> frame/pure_virtual.cpp)
target_include_directories(kalorfix INTERFACE "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
target_link_libraries(kalorfix PRIVATE kalorfix_options m)
set_target_properties(
  kalorfix
  PROPERTIES PREFIX ""
             SUFFIX ".so"
             OUTPUT_NAME kalorfix
             LINKER_LANGUAGE CXX
             LINK_DEPENDS "${_version_script}"
             LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}")
# Functions bind inside the library; exported variables keep ordinary rules, so that a program linked against
# the library reads their live values.
target_link_options(
  kalorfix PRIVATE "-Wl,--version-script=${_version_script}" "-Wl,-Bsymbolic-functions,-z,relro,-z,now"
  "-Wl,--as-needed")
if(NOT KALORFIX_SANITIZE)
  # A controller's system may be older than the compiler's libraries: bring them along.
  target_link_options(kalorfix PRIVATE "-Wl,-z,defs" -static-libstdc++ -static-libgcc)
  # But not its operator delete: what a host deletes is the host's.
  target_sources(kalorfix PRIVATE frame/deletion.cpp)
  target_link_options(kalorfix PRIVATE "-Wl,--wrap=_ZdlPv,--wrap=_ZdlPvm,--wrap=_ZdlPvj")
endif()
