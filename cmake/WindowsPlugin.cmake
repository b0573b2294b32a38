# tlmplgm4.dll: the engine behind the two exports and DllMain. The objects are linked straight in, so that the export
# list finds its functions.
set(dll_folder ${CMAKE_CURRENT_SOURCE_DIR}/src/platform/win32/dll)
enable_language(RC)
string(REPLACE "." "," version_numbers "${PROJECT_VERSION}.0")
configure_file(${dll_folder}/version.rc.in ${CMAKE_BINARY_DIR}/version.rc @ONLY)
add_library(tlmplgm4 SHARED $<TARGET_OBJECTS:glyphmotion> ${dll_folder}/dll_main.cpp ${CMAKE_BINARY_DIR}/version.rc
  ${dll_folder}/tlmplgm4.def)
set_target_properties(tlmplgm4 PROPERTIES PREFIX "")
target_include_directories(tlmplgm4 PRIVATE src)
target_link_libraries(tlmplgm4 PRIVATE glyphmotion_settings ${platform_libraries})
set_target_properties(tlmplgm4 PROPERTIES LINK_DEPENDS ${dll_folder}/tlmplgm4.def)
if(MINGW)
  target_link_options(tlmplgm4 PRIVATE -s -Wl,--no-insert-timestamp)  # the same sources give the same bytes
endif()

file(COPY share/glyphmotion DESTINATION ${CMAKE_BINARY_DIR}/share)
configure_file(share/glyphmotion/TLMPLGM4.HTML ${CMAKE_BINARY_DIR}/TLMPLGM4.HTML COPYONLY)  # help, beside the library

install(TARGETS tlmplgm4 RUNTIME DESTINATION .)
install(FILES share/glyphmotion/TLMPLGM4.HTML DESTINATION .)
install(DIRECTORY share/glyphmotion DESTINATION share PATTERN TLMPLGM4.HTML EXCLUDE)

add_subdirectory(tests/windows)
