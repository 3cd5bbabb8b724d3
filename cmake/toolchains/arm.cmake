# SPDX-License-Identifier: MIT
# What the ARM toolchains have in common.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${_processor})
set(CMAKE_LIBRARY_ARCHITECTURE ${_triplet})
set(CMAKE_C_COMPILER ${_triplet}-gcc)
set(CMAKE_CXX_COMPILER ${_triplet}-g++)

# Packages for the target, unpacked by cmake/debian_root.sh, for tool and tests; the library alone needs none.
set(_root "${CMAKE_CURRENT_LIST_DIR}/../../build/root/${_architecture}")
cmake_path(NORMAL_PATH _root)
if(EXISTS "${_root}")
  set(CMAKE_FIND_ROOT_PATH "${_root}")
  set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
  set(CMAKE_C_FLAGS_INIT "-isystem \"${_root}/usr/include/${_triplet}\"")
  set(CMAKE_CXX_FLAGS_INIT "-isystem \"${_root}/usr/include/${_triplet}\"")
  # Where the linker finds what those libraries need in turn.
  set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,\"${_root}/usr/lib/${_triplet}\"")
else()
  set(_root "/usr/${_triplet}")
endif()
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${_processor} -L "${_root}")
