# The built-in animation frameworks' row tables, generated from one data file.
set(TALVEX_FRAMEWORKS_DATA ${CMAKE_SOURCE_DIR}/codegen/data/animation_frameworks.json)
set(TALVEX_FRAMEWORKS_SOURCE ${TALVEX_GENERATED_DIR}/sorvane/arf/animation/BuiltinFrameworkTables.cpp)
add_custom_command(OUTPUT ${TALVEX_FRAMEWORKS_SOURCE}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${TALVEX_GENERATED_DIR}/sorvane/arf/animation
  COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/codegen/frameworks.py ${TALVEX_FRAMEWORKS_DATA}
    ${TALVEX_FRAMEWORKS_SOURCE}
  DEPENDS ${TALVEX_FRAMEWORKS_DATA} ${CMAKE_SOURCE_DIR}/codegen/frameworks.py
  COMMENT "Generating the built-in animation framework tables")
list(APPEND TALVEX_GENERATED_SOURCES ${TALVEX_FRAMEWORKS_SOURCE})
