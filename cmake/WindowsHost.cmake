# glyphmotion-host.exe: a window that runs the plug-in, plays and saves what it builds. It loads the library as any host
# does; of the engine it has only what turns true colour into a GIF.
set(host_folder ${CMAKE_CURRENT_SOURCE_DIR}/host/windows)

# Two libraries of headers only. Those of the machine that builds serve as well where the compiler is a cross compiler,
# but the folder they lie in does not: it holds that machine's own headers too.
if(CMAKE_CROSSCOMPILING)
  foreach(header CLI/CLI.hpp nlohmann/json.hpp)
    get_filename_component(name ${header} DIRECTORY)
    find_path(${name}_folder ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
    file(CREATE_LINK ${${name}_folder}/${name} ${CMAKE_BINARY_DIR}/headers/${name} SYMBOLIC)
  endforeach()
  set(header_folders ${CMAKE_BINARY_DIR}/headers)
else()
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  set(header_libraries CLI11::CLI11 nlohmann_json::nlohmann_json)
endif()

configure_file(${host_folder}/host.rc.in ${CMAKE_BINARY_DIR}/host.rc @ONLY)
file(GLOB windows_host_sources CONFIGURE_DEPENDS host/windows/*.cpp host/recording/*.cpp
  host/encoders/gif_*.cpp)
add_executable(glyphmotion_windows_host WIN32 ${windows_host_sources}
  host/encoders/dib_reader.cpp host/encoders/lzw.cpp host/encoders/lzw_lossy.cpp host/encoders/screen.cpp
  ${CMAKE_BINARY_DIR}/host.rc)
set_target_properties(glyphmotion_windows_host PROPERTIES OUTPUT_NAME glyphmotion-host)
set_source_files_properties(${CMAKE_BINARY_DIR}/host.rc PROPERTIES OBJECT_DEPENDS
  "${host_folder}/commands.h;${host_folder}/host.manifest;${host_folder}/glyphmotion.ico")
target_include_directories(glyphmotion_windows_host PRIVATE src ${CMAKE_CURRENT_SOURCE_DIR})
target_include_directories(glyphmotion_windows_host SYSTEM PRIVATE ${header_folders})
target_link_libraries(glyphmotion_windows_host PRIVATE glyphmotion_settings glyphmotion ${header_libraries}
  windowscodecs shlwapi version uuid comctl32 comdlg32 shell32 ole32 user32 gdi32)
add_dependencies(glyphmotion_windows_host tlmplgm4)
if(MINGW)
  target_link_options(glyphmotion_windows_host PRIVATE -s)
endif()

install(TARGETS glyphmotion_windows_host RUNTIME DESTINATION .)

# Its user, a plug-in that it must survive, and its reading of pictures.
add_executable(drive_host EXCLUDE_FROM_ALL tests/windows/drive_host.cpp)
target_link_libraries(drive_host PRIVATE glyphmotion_settings user32)
add_library(rude_plugin MODULE EXCLUDE_FROM_ALL tests/windows/rude_plugin.cpp)
set_target_properties(rude_plugin PROPERTIES PREFIX "")
target_include_directories(rude_plugin PRIVATE include)
target_compile_definitions(rude_plugin PRIVATE GLYPHMOTION_BUILDING_DLL)
target_link_libraries(rude_plugin PRIVATE glyphmotion_settings)
add_executable(try_pictures EXCLUDE_FROM_ALL tests/windows/try_pictures.cpp host/windows/picture_file.cpp)
target_include_directories(try_pictures PRIVATE src ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(try_pictures PRIVATE glyphmotion_settings glyphmotion windowscodecs uuid ole32)
add_dependencies(windows_tests glyphmotion_windows_host drive_host rude_plugin try_pictures)
