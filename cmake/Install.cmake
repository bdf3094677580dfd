# Installs the shared library, the public headers (with their folder layout),
# a CMake package (find_package(fileinfo) -> fileinfo::fileinfo) and a
# pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS fileinfo EXPORT fileinfoTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(dir platform utils riff imaging metadata zipcontainer fill fileinfo)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${dir}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/fileinfo/${dir}
    FILES_MATCHING PATTERN "*.h")
endforeach()
install(EXPORT fileinfoTargets NAMESPACE fileinfo:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/fileinfo)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/fileinfoConfig.cmake.in
  ${PROJECT_BINARY_DIR}/fileinfoConfig.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/fileinfo)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/fileinfoConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/fileinfoConfig.cmake ${PROJECT_BINARY_DIR}/fileinfoConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/fileinfo)
configure_file(${PROJECT_SOURCE_DIR}/cmake/fileinfo.pc.in ${PROJECT_BINARY_DIR}/fileinfo.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/fileinfo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
