# The program as two files: `glyphmotion` starts fast, because it is linked without the libraries of the page's server
# and of rare formats; it passes such jobs on to `glyphmotion-full`, which has everything.
add_executable(glyphmotion_full host/program/main.cpp)
set_target_properties(glyphmotion_full PROPERTIES OUTPUT_NAME glyphmotion-full)
target_link_libraries(glyphmotion_full PRIVATE glyphmotion_settings glyphmotion_host)

# Its own sources take the place of those in the archives, and libraries that nothing refers to are not loaded.
set(quick_sources host/quick/main.cpp host/quick/full_program.cpp host/quick/left_out.cpp)
foreach(format_library avif:libavif webm:vpx)
  string(REPLACE ":" ";" format_library ${format_library})
  list(GET format_library 0 format)
  list(GET format_library 1 library)
  if(${library}_FOUND)
    list(APPEND quick_sources host/quick/${format}.cpp)
  endif()
endforeach()
add_executable(glyphmotion_program ${quick_sources})
set_target_properties(glyphmotion_program PROPERTIES OUTPUT_NAME glyphmotion)
target_include_directories(glyphmotion_program PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(glyphmotion_program PRIVATE glyphmotion_settings glyphmotion_host)
target_link_options(glyphmotion_program PRIVATE -Wl,--as-needed)
add_dependencies(glyphmotion_program glyphmotion_full)

# Installed as libexec/glyphmotion/glyphmotion-full.
set(full_program_folder ${CMAKE_INSTALL_LIBEXECDIR}/glyphmotion)
file(RELATIVE_PATH to_full_program ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/glyphmotion)
set_source_files_properties(host/quick/full_program.cpp PROPERTIES COMPILE_DEFINITIONS
  GLYPHMOTION_FULL_PROGRAM_FOLDER="${to_full_program}/")
