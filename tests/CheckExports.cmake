# Checks the dynamic symbol table of the library: the error slot and its
# functions are exported, internal helpers are not.
execute_process(COMMAND nm -D --defined-only ${LIBRARY} OUTPUT_VARIABLE symbols RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
foreach(required sorvane_errorMessage sorvane_getErrorMessage sorvane_setErrorMessage sorvane_clearErrorMessage)
  if(NOT symbols MATCHES "[ \t][A-Za-z] ${required}\n")
    message(FATAL_ERROR "${required} is not exported")
  endif()
endforeach()
# Internal namespaces (the flat frame, implementation details) stay hidden.
string(REGEX MATCHALL "[^\n]*(7sorvane4flat|7sorvane6detail|N7sorvane[0-9a-z]*6detail)[^\n]*" leaked "${symbols}")
if(leaked)
  message(FATAL_ERROR "internal symbols exported:\n${leaked}")
endif()
message(STATUS "exports ok")
