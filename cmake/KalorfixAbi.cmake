# The binary interface of the built library beside the one stored in tests/abi. GCC's debug information alone is compared:
# Clang describes the same types in other words. A sanitizer adds to the exports, an unsigned char changes a type.
find_program(KALORFIX_ABIDW abidw)
find_program(KALORFIX_ABIDIFF abidiff)
if(KALORFIX_ABIDW AND KALORFIX_ABIDIFF AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND KALORFIX_TARGET MATCHES "^(x86_64|arm)-"
   AND NOT KALORFIX_SANITIZE AND NOT KALORFIX_UNSIGNED_CHAR)
  set(_script "${PROJECT_SOURCE_DIR}/tests/abi_test.sh")
  if(KALORFIX_TESTS)
    add_test(NAME abi.unchanged COMMAND sh "${_script}" "$<TARGET_FILE:kalorfix>")
  endif()
  add_custom_target(abi_baseline COMMAND sh "${_script}" --accept "$<TARGET_FILE:kalorfix>" DEPENDS kalorfix VERBATIM)
elseif(NOT KALORFIX_ABIDW OR NOT KALORFIX_ABIDIFF)
  message(STATUS "No abidw and abidiff (abigail-tools): the binary interface is not compared")
endif()
