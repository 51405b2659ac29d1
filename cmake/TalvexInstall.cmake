include(CMakePackageConfigHelpers)

foreach(header ${TALVEX_HEADERS})
  get_filename_component(dir ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${dir})
endforeach()
foreach(header ${TALVEX_GENERATED_HEADERS})
  file(RELATIVE_PATH rel ${TALVEX_GENERATED_DIR} ${header})
  get_filename_component(dir ${rel} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${dir})
endforeach()

install(TARGETS talvex EXPORT talvexTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT talvexTargets NAMESPACE talvex::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/talvex)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/talvexConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/talvexConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/talvex)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/talvexConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/talvexConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/talvexConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/talvex)

# The prefix is found from the .pc file's own place, so the tree can move.
file(RELATIVE_PATH TALVEX_PC_UP /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" TALVEX_PC_UP "${TALVEX_PC_UP}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/talvex.pc.in ${CMAKE_CURRENT_BINARY_DIR}/talvex.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/talvex.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
