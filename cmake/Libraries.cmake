# The shipped libraries: data under share/, made by tools/make_libraries.cpp and committed. `libraries` makes them anew;
# every build finds a copy beside its programs, as an installed program does.
add_executable(make_libraries EXCLUDE_FROM_ALL tools/make_libraries.cpp)
target_include_directories(make_libraries PRIVATE src)
target_link_libraries(make_libraries PRIVATE glyphmotion_settings glyphmotion)
add_custom_target(libraries
  COMMAND make_libraries ${CMAKE_CURRENT_SOURCE_DIR}/share/glyphmotion
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${CMAKE_CURRENT_SOURCE_DIR}/share ${CMAKE_BINARY_DIR}/share)

file(GLOB_RECURSE shipped CONFIGURE_DEPENDS share/glyphmotion/*)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${shipped})  # an edit copies them anew
file(COPY share/glyphmotion DESTINATION ${CMAKE_BINARY_DIR}/share)
install(DIRECTORY share/glyphmotion DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT data PATTERN "*.bak" EXCLUDE)

# The page lies among the shipped data; a build shows the sources, so that a change needs no build.
if(GLYPHMOTION_PROGRAM AND NOT WIN32)
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/web ${CMAKE_BINARY_DIR}/share/glyphmotion/web SYMBOLIC)
  install(DIRECTORY web DESTINATION ${CMAKE_INSTALL_DATADIR}/glyphmotion COMPONENT program
    PATTERN "*.json" EXCLUDE)
endif()
