# Library with its gas data beside it, headers, tool.
install(TARGETS kalorfix LIBRARY DESTINATION "lib")
install(FILES "${KALORFIX_GAS_DAT}" DESTINATION "lib")
install(FILES include/kalorfix.h include/kalorfix_calculators.h include/kalorfix_gas.h include/kalorfix_runtime.h
        DESTINATION "include")
if(KALORFIX_TOOL)
  install(TARGETS kalorfix_tool RUNTIME DESTINATION "bin")
  install(DIRECTORY examples DESTINATION "share/kalorfix")
endif()
