# Installs the library with its public headers, the package files for find_package and pkg-config, the program and what
# belongs to each. The components are those of the packages.
include(CMakePackageConfigHelpers)
include(Libraries)

install(TARGETS ${public_library} EXPORT glyphmotion_targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(TARGETS glyphmotion_settings EXPORT glyphmotion_targets)
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
set(pc_requires "freetype2 fontconfig harfbuzz fribidi libpng zlib libwebp libwebpmux ${optional_modules}")
set(pc_libraries "-lstdc++ -lm -pthread -ldl")
if(BUILD_SHARED_LIBS)
  set(pc_private .private)
endif()
configure_file(cmake/glyphmotion.pc.in ${CMAKE_CURRENT_BINARY_DIR}/glyphmotion.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/glyphmotion.pc DESTINATION ${pc_folder} COMPONENT development)

if(GLYPHMOTION_PROGRAM)
  install(TARGETS glyphmotion_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)

  # The program writes its own manual page and completions.
  set(pages ${CMAKE_CURRENT_BINARY_DIR}/pages)
  foreach(page "man:glyphmotion.1:${CMAKE_INSTALL_MANDIR}/man1" "bash:glyphmotion:${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
      "zsh:_glyphmotion:${CMAKE_INSTALL_DATADIR}/zsh/site-functions" "fish:glyphmotion.fish:${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
    string(REPLACE ":" ";" page ${page})
    list(POP_FRONT page kind name folder)
    set(words man)
    if(NOT kind STREQUAL man)
      set(words completion ${kind})
    endif()
    set(file ${pages}/${kind}/${name})
    add_custom_command(OUTPUT ${file} DEPENDS glyphmotion_program VERBATIM
      COMMAND ${CMAKE_COMMAND} -E make_directory ${pages}/${kind}
      COMMAND ${CMAKE_COMMAND} "-DPROGRAM=$<TARGET_FILE:glyphmotion_program>" "-DWORDS=${words}" -DFILE=${file}
        -P ${CMAKE_CURRENT_SOURCE_DIR}/cmake/WritePage.cmake)
    list(APPEND page_files ${file})
    install(FILES ${file} DESTINATION ${folder} COMPONENT program)
  endforeach()
  add_custom_target(pages ALL DEPENDS ${page_files})
endif()
