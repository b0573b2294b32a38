# Installs the library with its public headers, the package files for find_package and pkg-config, the program and what
# belongs to each. The components are those of the packages.
include(CMakePackageConfigHelpers)
include(Libraries)

install(TARGETS ${public_library} EXPORT glyphmotion_targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(TARGETS glyphmotion_settings EXPORT glyphmotion_targets COMPONENT development)
install(DIRECTORY include/glyphmotion DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/glyphmotion)
install(EXPORT glyphmotion_targets NAMESPACE glyphmotion:: DESTINATION ${package_folder} COMPONENT development)

configure_package_config_file(cmake/glyphmotionConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/glyphmotionConfig.cmake
  INSTALL_DESTINATION ${package_folder} PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/glyphmotionConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/data_folder.cpp.in ${CMAKE_CURRENT_BINARY_DIR}/glyphmotionConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/glyphmotionConfigVersion.cmake DESTINATION ${package_folder} COMPONENT development)

# pkg-config finds the folders from where its own file is, so that the prefix may be moved.
set(pc_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pc_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
# A shared library brings what it needs.
if(NOT BUILD_SHARED_LIBS)
  set(pc_static "Requires: freetype2 fontconfig harfbuzz fribidi libpng zlib libwebp libwebpmux ${optional_modules}")
  set(pc_libraries " -lstdc++ -lm -pthread -ldl")
endif()
configure_file(cmake/glyphmotion.pc.in ${CMAKE_CURRENT_BINARY_DIR}/glyphmotion.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/glyphmotion.pc DESTINATION ${pc_folder} COMPONENT development)

set(doc_folder ${CMAKE_INSTALL_DATADIR}/doc)
install(FILES docs/library.md docs/hosting.md DESTINATION ${doc_folder}/libglyphmotion-dev COMPONENT development)
install(DIRECTORY examples DESTINATION ${doc_folder}/libglyphmotion-dev COMPONENT development)

if(NOT GLYPHMOTION_PROGRAM)
  return()
endif()
install(TARGETS glyphmotion_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
install(TARGETS glyphmotion_full RUNTIME DESTINATION ${full_program_folder} COMPONENT program)
install(FILES README.md CHANGELOG.md DESTINATION ${doc_folder}/glyphmotion COMPONENT program)
install(DIRECTORY docs DESTINATION ${doc_folder}/glyphmotion COMPONENT program)

# The manual page and the completions, which the program writes.
if(NOT CMAKE_CROSSCOMPILING)
  set(pages ${CMAKE_CURRENT_BINARY_DIR}/pages)
  set(program $<TARGET_FILE:glyphmotion_program>)
  add_custom_command(OUTPUT ${pages}/glyphmotion.1.gz ${pages}/glyphmotion ${pages}/_glyphmotion ${pages}/glyphmotion.fish
    COMMAND ${CMAKE_COMMAND} -E make_directory ${pages}
    COMMAND sh -c "'${program}' man | gzip -9n >'${pages}/glyphmotion.1.gz'"
    COMMAND sh -c "'${program}' completion bash >'${pages}/glyphmotion'"
    COMMAND sh -c "'${program}' completion zsh >'${pages}/_glyphmotion'"
    COMMAND sh -c "'${program}' completion fish >'${pages}/glyphmotion.fish'"
    DEPENDS glyphmotion_program glyphmotion_full VERBATIM)
  add_custom_target(program_pages ALL DEPENDS ${pages}/glyphmotion.1.gz)
  install(FILES ${pages}/glyphmotion.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
  install(FILES ${pages}/glyphmotion DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
  install(FILES ${pages}/_glyphmotion DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT program)
  install(FILES ${pages}/glyphmotion.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT program)
endif()

# The page as a program of the desktop.
set(desktop packaging/desktop/org.glyphmotion.Glyphmotion)
configure_file(${desktop}.metainfo.xml ${CMAKE_CURRENT_BINARY_DIR}/org.glyphmotion.Glyphmotion.metainfo.xml @ONLY)
install(FILES ${desktop}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT program)
install(FILES ${desktop}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT program)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/org.glyphmotion.Glyphmotion.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT program)
install(FILES ${desktop}.mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages COMPONENT program
  RENAME org.glyphmotion.Glyphmotion.xml)

include(Packages)
