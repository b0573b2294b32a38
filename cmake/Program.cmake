# The program as two files: `glyphmotion` starts fast, because it is linked without the libraries of the page's server
# and of rare formats, and is built fast, because it has no subcommands; it passes such jobs on to `glyphmotion-full`,
# which has everything.

# What every run needs; then the subcommands, and the page.
set(line_sources)
foreach(name command_line help interrupts json_lines lists outcome program progress)
  list(APPEND line_sources host/program/${name}.cpp)
endforeach()
list(TRANSFORM line_sources PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
file(GLOB command_sources CONFIGURE_DEPENDS host/recording/*.cpp host/program/*.cpp)
list(REMOVE_ITEM command_sources ${line_sources} ${CMAKE_CURRENT_SOURCE_DIR}/host/program/main.cpp)
file(GLOB page_sources CONFIGURE_DEPENDS host/page/*.cpp)
optimise_little(${line_sources} ${command_sources} ${page_sources} FOLDERS host/recording host/page host/program)
foreach(part line command page)
  merge_sources(${part}_sources)
endforeach()

set(host_libraries PNG::PNG PkgConfig::WEBP CLI11::CLI11 nlohmann_json::nlohmann_json PkgConfig::HTTPLIB PkgConfig::LIBZIP
  Threads::Threads)
add_library(glyphmotion_line OBJECT ${line_sources})
add_library(glyphmotion_page OBJECT ${page_sources})
add_library(glyphmotion_host STATIC ${command_sources} $<TARGET_OBJECTS:glyphmotion_line> $<TARGET_OBJECTS:glyphmotion_page>)
foreach(part line page host)
  target_include_directories(glyphmotion_${part} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_link_libraries(glyphmotion_${part} PUBLIC glyphmotion PRIVATE glyphmotion_settings ${host_libraries})
endforeach()

add_executable(glyphmotion_full host/program/main.cpp)
set_target_properties(glyphmotion_full PROPERTIES OUTPUT_NAME glyphmotion-full)
target_link_libraries(glyphmotion_full PRIVATE glyphmotion_settings glyphmotion_host)

# Its own sources take the place of those in the archive, and libraries that nothing refers to are not loaded.
set(quick_sources host/quick/main.cpp host/quick/full_program.cpp host/quick/left_out.cpp)
foreach(format_library avif:libavif webm:vpx)
  string(REPLACE ":" ";" format_library ${format_library})
  list(GET format_library 0 format)
  list(GET format_library 1 library)
  if(${library}_FOUND)
    list(APPEND quick_sources host/quick/${format}.cpp)
  endif()
endforeach()
list(TRANSFORM quick_sources PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
merge_sources(quick_sources)
add_executable(glyphmotion_program ${quick_sources} $<TARGET_OBJECTS:glyphmotion_line>)
set_target_properties(glyphmotion_program PROPERTIES OUTPUT_NAME glyphmotion)
target_include_directories(glyphmotion_program PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/src)
target_link_libraries(glyphmotion_program PRIVATE glyphmotion_settings glyphmotion ${host_libraries})
target_link_options(glyphmotion_program PRIVATE -Wl,--as-needed)

# For ./run, which builds the full program when the words need it: exits with 0 if so.
add_executable(needs_full_program host/quick/needs_full_program.cpp host/quick/full_program.cpp)
target_include_directories(needs_full_program PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/src)
target_link_libraries(needs_full_program PRIVATE glyphmotion_settings glyphmotion)

# Installed as libexec/glyphmotion/glyphmotion-full.
set(full_program_folder ${CMAKE_INSTALL_LIBEXECDIR}/glyphmotion)
file(RELATIVE_PATH to_full_program ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/glyphmotion)
set_source_files_properties(host/quick/full_program.cpp PROPERTIES COMPILE_DEFINITIONS
  GLYPHMOTION_FULL_PROGRAM_FOLDER="${to_full_program}/")
