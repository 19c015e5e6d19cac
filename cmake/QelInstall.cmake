# Installation: headers, the two libraries, the evaluator, a CMake package
# (find_package(qelmath) gives qelmath::qelmath) and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS qelplatform qelmath EXPORT qelmathTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS qelmath_eval RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY "${PROJECT_SOURCE_DIR}/platform/include/qel" "${PROJECT_SOURCE_DIR}/qel"
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

install(EXPORT qelmathTargets NAMESPACE qelmath::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qelmath)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/qelmathConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/qelmathConfig.cmake"
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qelmath)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/qelmathConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/qelmathConfig.cmake"
  "${PROJECT_BINARY_DIR}/qelmathConfigVersion.cmake"
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qelmath)

# The pkg-config file finds its prefix relative to its own folder, so that an
# installed tree can be moved.
file(RELATIVE_PATH QEL_PC_RELATIVE_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" QEL_PC_RELATIVE_PREFIX "${QEL_PC_RELATIVE_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/qelmath.pc.in" "${PROJECT_BINARY_DIR}/qelmath.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/qelmath.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
