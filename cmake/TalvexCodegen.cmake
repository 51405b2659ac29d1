# Runs codegen/generate.py over schema/*.json. The list of outputs is asked from
# the generator at configure time so that CMake knows the files it builds.
set(TALVEX_GENERATED_DIR ${CMAKE_BINARY_DIR}/generated)
file(GLOB TALVEX_SCHEMAS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/schema/*.json)
file(GLOB TALVEX_CODEGEN_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/codegen/*.py)
set(TALVEX_GENERATED_SOURCES "")
set(TALVEX_GENERATED_HEADERS "")
if(TALVEX_SCHEMAS)
  execute_process(
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/codegen/generate.py --list
      --out ${TALVEX_GENERATED_DIR} ${TALVEX_SCHEMAS}
    OUTPUT_VARIABLE outputs RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "codegen/generate.py --list failed")
  endif()
  string(REPLACE "\n" ";" outputs "${outputs}")
  list(FILTER outputs EXCLUDE REGEX "^$")
  # The rule's output is a stamp, not the generated files: the generator leaves
  # files whose text is unchanged untouched, so a schema edit recompiles only
  # the sources it really changed.
  set(TALVEX_CODEGEN_STAMP ${TALVEX_GENERATED_DIR}/codegen.stamp)
  add_custom_command(OUTPUT ${TALVEX_CODEGEN_STAMP}
    BYPRODUCTS ${outputs}
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/codegen/generate.py
      --out ${TALVEX_GENERATED_DIR} ${TALVEX_SCHEMAS}
    COMMAND ${CMAKE_COMMAND} -E touch ${TALVEX_CODEGEN_STAMP}
    DEPENDS ${TALVEX_SCHEMAS} ${TALVEX_CODEGEN_SOURCES}
    COMMENT "Generating record classes from schema/")
  add_custom_target(talvex_codegen DEPENDS ${TALVEX_CODEGEN_STAMP})
  set_source_files_properties(${outputs} PROPERTIES GENERATED TRUE)
  foreach(f ${outputs})
    if(f MATCHES "\\.cpp$")
      list(APPEND TALVEX_GENERATED_SOURCES ${f})
    else()
      list(APPEND TALVEX_GENERATED_HEADERS ${f})
    endif()
  endforeach()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${TALVEX_CODEGEN_SOURCES})
endif()
