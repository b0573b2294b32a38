# tlmplgm4.dll: the engine behind the two exports and DllMain. The objects are linked straight in, so that the export
# list finds its functions. And the smallest host that tries it out.
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
  target_link_options(tlmplgm4 PRIVATE -s)
endif()

file(COPY share/glyphmotion DESTINATION ${CMAKE_BINARY_DIR}/share)

add_executable(try_plugin EXCLUDE_FROM_ALL tests/windows/try_plugin.cpp)
target_include_directories(try_plugin PRIVATE include)
target_link_libraries(try_plugin PRIVATE glyphmotion_settings user32)
add_dependencies(try_plugin tlmplgm4)

add_executable(try_services EXCLUDE_FROM_ALL tests/windows/try_services.cpp)
target_include_directories(try_services PRIVATE src)
target_link_libraries(try_services PRIVATE glyphmotion_settings glyphmotion)

# Loaders of several makes and versions, of which the library refuses one.
set(company "Tessaloom")
foreach(loader "15;Framewright Professional" "16;Framewright Motion" "3;Another Editor")
  list(GET loader 0 major)
  list(GET loader 1 product)
  configure_file(tests/windows/loader.rc.in ${CMAKE_BINARY_DIR}/loader${major}.rc @ONLY)
  add_executable(try_loader${major} EXCLUDE_FROM_ALL tests/windows/try_loader.cpp ${CMAKE_BINARY_DIR}/loader${major}.rc)
  target_link_libraries(try_loader${major} PRIVATE glyphmotion_settings)
  list(APPEND loaders try_loader${major})
endforeach()

add_custom_target(windows_tries DEPENDS tlmplgm4 try_plugin try_services ${loaders})
