# Installs the build tree into a scratch prefix and builds a consumer project
# against it with find_package(talvex); checks the pkg-config file too.
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK}/prefix
  RESULT_VARIABLE rc OUTPUT_QUIET)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "install failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/consumer
    -DCMAKE_PREFIX_PATH=${WORK}/prefix -DCMAKE_CXX_COMPILER=${CXX}
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${CXX_FLAGS}"
  RESULT_VARIABLE rc OUTPUT_QUIET)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "find_package(talvex) failed")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/consumer RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "consumer did not build")
endif()
file(GLOB pc ${WORK}/prefix/lib*/pkgconfig/talvex.pc ${WORK}/prefix/lib/*/pkgconfig/talvex.pc)
if(NOT pc)
  message(FATAL_ERROR "talvex.pc not installed")
endif()
message(STATUS "install ok")
