# Installs the program, the library, its public headers and a package file for find_package(glyphmotion).
include(CMakePackageConfigHelpers)
include(Libraries)

install(TARGETS glyphmotion EXPORT glyphmotion_targets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS glyphmotion_settings EXPORT glyphmotion_targets)
install(TARGETS glyphmotion_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY include/glyphmotion DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT glyphmotion_targets NAMESPACE glyphmotion:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/glyphmotion)

configure_package_config_file(cmake/glyphmotionConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/glyphmotionConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/glyphmotion PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/glyphmotionConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/data_folder.cpp.in ${CMAKE_CURRENT_BINARY_DIR}/glyphmotionConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/glyphmotionConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/glyphmotion)
