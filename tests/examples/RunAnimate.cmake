# Makes a stream with the talvex program, then runs an animate example on the
# example avatar and that stream and checks that the joints moved.
#   cmake -DTALVEX=... -DEXAMPLE=... -DSOURCE=... -DWORK=... -P RunAnimate.cmake
file(MAKE_DIRECTORY ${WORK})
execute_process(COMMAND ${TALVEX} stream-make ${SOURCE}/examples/body.stream.txt ${WORK}/body.stream
  RESULT_VARIABLE made OUTPUT_QUIET)
if(NOT made EQUAL 0)
  message(FATAL_ERROR "stream-make failed: ${made}")
endif()
execute_process(COMMAND ${EXAMPLE} ${SOURCE}/examples/avatar.arf.json ${WORK}/body.stream
  RESULT_VARIABLE ran OUTPUT_VARIABLE out ERROR_VARIABLE err)
if(NOT ran EQUAL 0)
  message(FATAL_ERROR "${EXAMPLE} failed (${ran}): ${out}${err}")
endif()
# The second unit (t 33) moves joint 0 to x 0.0416 and joint 1 to (0, 0.5978, 0.0208).
foreach(expected "31 units" "skeleton 1 joint 0: translation \\(0.0416, 1, 0\\)" "joint 1: translation \\(0, 0.5978, 0.0208\\)")
  if(NOT out MATCHES "${expected}")
    message(FATAL_ERROR "${EXAMPLE}: no \"${expected}\" in:\n${out}")
  endif()
endforeach()
