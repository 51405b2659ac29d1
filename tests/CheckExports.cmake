# Checks the dynamic symbol table of the library against the C headers: every
# declared sorvane_* function is exported, no undeclared sorvane_* symbol is,
# and internal helpers stay hidden.
execute_process(COMMAND nm -D --defined-only ${LIBRARY} OUTPUT_VARIABLE symbols RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()

string(REGEX MATCHALL "[ \t][A-Za-z] sorvane_[A-Za-z0-9_]+" exported "${symbols}")
list(TRANSFORM exported REPLACE "^[ \t][A-Za-z] " "")
list(REMOVE_DUPLICATES exported)

file(GLOB_RECURSE headers ${HEADER_DIR}/sorvane/*.h ${GENERATED_DIR}/sorvane/*.h)
set(declared sorvane_errorMessage)
foreach(header ${headers})
  file(READ ${header} text)
  string(REGEX MATCHALL "SORVANE_API[^;(]*[ *](sorvane_[A-Za-z0-9_]+)[ \t\n]*\\(" found "${text}")
  foreach(declaration ${found})
    string(REGEX REPLACE ".*(sorvane_[A-Za-z0-9_]+)[ \t\n]*\\($" "\\1" name "${declaration}")
    list(APPEND declared ${name})
  endforeach()
endforeach()
list(REMOVE_DUPLICATES declared)

set(missing ${declared})
list(REMOVE_ITEM missing ${exported})
set(extra ${exported})
list(REMOVE_ITEM extra ${declared})
if(missing)
  message(FATAL_ERROR "declared but not exported: ${missing}")
endif()
if(extra)
  message(FATAL_ERROR "exported but not declared in a public header: ${extra}")
endif()

# Internal namespaces (the flat frame, implementation details) stay hidden.
string(REGEX MATCHALL "[^\n]*(7sorvane4flat|7sorvane6detail|N7sorvane[0-9a-z]*6detail)[^\n]*" leaked "${symbols}")
if(leaked)
  message(FATAL_ERROR "internal symbols exported:\n${leaked}")
endif()
list(LENGTH declared count)
message(STATUS "exports ok: ${count} flat symbols")
