# Library with its gas data beside it, headers, tool with its case files.
install(TARGETS kalorfix LIBRARY DESTINATION "lib")
install(FILES "${KALORFIX_GAS_DAT}" DESTINATION "lib")
install(FILES include/kalorfix.h include/kalorfix_calculators.h include/kalorfix_gas.h include/kalorfix_runtime.h
        DESTINATION "include")
if(KALORFIX_TOOL)
  install(TARGETS kalorfix_tool RUNTIME DESTINATION "bin")
  install(DIRECTORY tests/cases/ DESTINATION "share/kalorfix/cases" FILES_MATCHING PATTERN "*.txt")
  install(FILES docs/deviations.md docs/not_verified.md DESTINATION "share/kalorfix")
  install(DIRECTORY examples DESTINATION "share/kalorfix")
endif()
