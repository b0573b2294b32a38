# glyphmotion-conformance: a program that plays a host to a library, and a library that plays the plug-in to a host. Both
# know the public header alone.
set(conformance_folder ${CMAKE_INSTALL_LIBDIR}/glyphmotion)
add_library(conformance_plugin MODULE tools/conformance/strict_plugin.cpp)
set_target_properties(conformance_plugin PROPERTIES PREFIX "" OUTPUT_NAME conformance)
add_executable(conformance tools/conformance/main.cpp tools/conformance/strict_host.cpp)
set_target_properties(conformance PROPERTIES OUTPUT_NAME glyphmotion-conformance)
file(RELATIVE_PATH conformance_from_program ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_PREFIX}/${conformance_folder})
target_compile_definitions(conformance PRIVATE CONFORMANCE_PLUGIN="conformance.so" CONFORMANCE_INSTALLED="${conformance_from_program}")
foreach(target conformance conformance_plugin)
  target_include_directories(${target} PRIVATE include)
  target_link_libraries(${target} PRIVATE glyphmotion_settings ${CMAKE_DL_LIBS} Threads::Threads)
endforeach()
install(TARGETS conformance RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT development)
install(TARGETS conformance_plugin LIBRARY DESTINATION ${conformance_folder} COMPONENT development)
set(conformance_manual ${PROJECT_BINARY_DIR}/glyphmotion-conformance.1.gz)
add_custom_command(OUTPUT ${conformance_manual} VERBATIM
  COMMAND sh -c "gzip -9nc '${PROJECT_SOURCE_DIR}/tools/conformance/glyphmotion-conformance.1' >'${conformance_manual}'"
  DEPENDS ${PROJECT_SOURCE_DIR}/tools/conformance/glyphmotion-conformance.1)
add_custom_target(conformance_manual ALL DEPENDS ${conformance_manual})
install(FILES ${conformance_manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT development)
