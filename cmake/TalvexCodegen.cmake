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
  add_custom_command(OUTPUT ${outputs}
    COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/codegen/generate.py
      --out ${TALVEX_GENERATED_DIR} ${TALVEX_SCHEMAS}
    DEPENDS ${TALVEX_SCHEMAS} ${TALVEX_CODEGEN_SOURCES}
    COMMENT "Generating record classes from schema/")
  foreach(f ${outputs})
    if(f MATCHES "\\.cpp$")
      list(APPEND TALVEX_GENERATED_SOURCES ${f})
    else()
      list(APPEND TALVEX_GENERATED_HEADERS ${f})
    endif()
  endforeach()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${TALVEX_CODEGEN_SOURCES})
endif()
