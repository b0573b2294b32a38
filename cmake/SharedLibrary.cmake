# libglyphmotion.so: the objects of the static library with nothing shown but what the public headers declare. Its C API
# is stable: SOVERSION counts the times that it breaks. The C++ API is that of one release, and its symbols carry the
# release in their version, so that a program built for another one does not start instead of going wrong.
set(GLYPHMOTION_SOVERSION 1)
set(GLYPHMOTION_ABI_VERSION ${GLYPHMOTION_SOVERSION}.0.0)
set(version_script ${CMAKE_CURRENT_BINARY_DIR}/glyphmotion.map)
configure_file(cmake/glyphmotion.map.in ${version_script} @ONLY)

add_library(glyphmotion_shared SHARED $<TARGET_OBJECTS:glyphmotion>)
set_target_properties(glyphmotion_shared PROPERTIES OUTPUT_NAME glyphmotion EXPORT_NAME glyphmotion
  VERSION ${GLYPHMOTION_ABI_VERSION} SOVERSION ${GLYPHMOTION_SOVERSION} LINKER_LANGUAGE CXX LINK_DEPENDS ${version_script})
target_include_directories(glyphmotion_shared
  INTERFACE $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(glyphmotion_shared PRIVATE $<BUILD_INTERFACE:glyphmotion_settings> ${platform_libraries})
target_link_options(glyphmotion_shared PRIVATE LINKER:--version-script=${version_script} LINKER:--no-undefined)
target_compile_features(glyphmotion_shared INTERFACE cxx_std_20)

if(BUILD_SHARED_LIBS)
  set(public_library glyphmotion_shared)
else()
  set(public_library glyphmotion)
  set_target_properties(glyphmotion_shared PROPERTIES EXCLUDE_FROM_ALL ON)
endif()
add_library(glyphmotion::glyphmotion ALIAS ${public_library})
