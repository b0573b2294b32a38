# Debian packages: cmake --preset packages, build, then cpack in the build folder; scripts/check-packages does it all.
# Off Debian, or without this preset, nothing here has an effect but on cpack.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "The Glyphmotion developers")
set(CPACK_PACKAGE_CONTACT "The Glyphmotion developers <developers@glyphmotion.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
  WORLD_EXECUTE)

# component package section dependencies description: the first line is the summary.
function(debian_package component package section depends summary text)
  string(TOUPPER ${component} upper)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
  install(FILES packaging/debian/copyright DESTINATION ${doc_folder}/${package} COMPONENT ${component})
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz DESTINATION ${doc_folder}/${package} COMPONENT ${component})
endfunction()

find_program(GZIP gzip)
if(NOT BUILD_SHARED_LIBS OR NOT GLYPHMOTION_PYTHON OR NOT GZIP)
  return()
endif()
execute_process(COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/packaging/debian/changelog
  OUTPUT_FILE ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)

set(same "(= ${PROJECT_VERSION})")
set(what "Glyphmotion turns a line of text into an animated GIF, WebP or PNG with one of\n21 effects.")
debian_package(program glyphmotion graphics "glyphmotion-data ${same}" "animated text from the command line and in the browser"
  "${what}\nThis package has the program and its page.")
debian_package(library libglyphmotion${GLYPHMOTION_SOVERSION} libs "glyphmotion-data ${same}" "animated text - shared library"
  "${what}\nThis package has the library for programs that use it.")
debian_package(development libglyphmotion-dev libdevel "libglyphmotion${GLYPHMOTION_SOVERSION} ${same}"
  "animated text - development files"
  "${what}\nThis package has the headers for C and C++, the files for CMake and\npkg-config, and examples.")
debian_package(data glyphmotion-data graphics "" "animated text - textures, tiles and fountains"
  "${what}\nThis package has the materials that letters can be filled with.")
set(CPACK_DEBIAN_DATA_PACKAGE_ARCHITECTURE all)

find_package(Python3 COMPONENTS Interpreter REQUIRED)
math(EXPR next_python "${Python3_VERSION_MINOR} + 1")
debian_package(python python3-glyphmotion python
  "libglyphmotion${GLYPHMOTION_SOVERSION} ${same}, python3 (>= 3.${Python3_VERSION_MINOR}), python3 (<< 3.${next_python})"
  "animated text - Python module"
  "${what}\nThis package has the module for Python, which gives files, NumPy arrays and\nimages of Pillow.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "python3-numpy, python3-pil")

foreach(component PROGRAM LIBRARY DEVELOPMENT PYTHON)
  set(CPACK_DEBIAN_${component}_PACKAGE_SHLIBDEPS ON)
endforeach()
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "fonts-liberation, xdg-utils")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "fonts-liberation")
configure_file(packaging/debian/shlibs.in ${CMAKE_CURRENT_BINARY_DIR}/shlibs @ONLY)
# cpack itself adds calls of ldconfig, which the trigger makes superfluous, but not the trigger.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_BINARY_DIR}/shlibs ${CMAKE_CURRENT_SOURCE_DIR}/packaging/debian/triggers)
include(CPack)
