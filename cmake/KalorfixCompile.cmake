# SPDX-License-Identifier: MIT
# How every target of the project is compiled.
add_library(kalorfix_options INTERFACE)
target_compile_features(kalorfix_options INTERFACE cxx_std_20 c_std_99)
target_compile_options(
  kalorfix_options
  INTERFACE -Wall -Wextra -Wconversion -Wshadow -Wpedantic
            # The last digit is part of the contract: no fused multiply-add, whatever the processor offers.
            -ffp-contract=off
            # Builds from two directories give the same bytes.
            -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=./build)
# GCC 12 warns of std::string's own operator+ (GCC bug 105651).
set(_gcc12 "$<AND:$<COMPILE_LANG_AND_ID:CXX,GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>")
target_compile_options(kalorfix_options INTERFACE $<${_gcc12}:-Wno-restrict>)
if(KALORFIX_SANITIZE)
  # vptr would need the library's type information in programs that only dlopen it.
  set(_sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize=vptr -fno-sanitize-recover=all
                  -fno-omit-frame-pointer)
  target_compile_options(kalorfix_options INTERFACE ${_sanitizers})
  target_link_options(kalorfix_options INTERFACE ${_sanitizers})
endif()
if(KALORFIX_FUZZ)
  target_compile_options(kalorfix_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
