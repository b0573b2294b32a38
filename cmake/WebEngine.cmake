# The program as a WebAssembly module, for Node and for workers.
set(EMSCRIPTEN_FLAGS -sALLOW_MEMORY_GROWTH=1 -sINITIAL_MEMORY=32MB)
file(GLOB host_sources CONFIGURE_DEPENDS host/encoders/*.cpp host/recording/*.cpp host/program/*.cpp host/web/edit.cpp)
list(FILTER host_sources EXCLUDE REGEX "host/program/(edit|main)\\.cpp$")
add_library(glyphmotion_host STATIC ${host_sources})
target_include_directories(glyphmotion_host PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/src)
target_link_libraries(glyphmotion_host PUBLIC glyphmotion PRIVATE glyphmotion_settings PNG::PNG PkgConfig::WEBP CLI11::CLI11
  nlohmann_json::nlohmann_json)

# What loops over pixels is compiled for speed, the rest for size.
target_compile_options(glyphmotion_host PRIVATE -Os)
file(GLOB rest src/shell/*.cpp src/controls/*.cpp src/resources/*.cpp src/platform/*.cpp src/platform/portable/*.cpp
  src/platform/web/*.cpp host/render/*.cpp)
set_source_files_properties(${rest} PROPERTIES COMPILE_OPTIONS -Os)
set_source_files_properties(host/encoders/lzw.cpp host/encoders/gif_frame.cpp PROPERTIES COMPILE_OPTIONS -O3)

add_executable(engine host/web/engine.cpp)
set_target_properties(engine PROPERTIES SUFFIX .mjs)
target_link_libraries(engine PRIVATE glyphmotion_settings glyphmotion_host nlohmann_json::nlohmann_json)
target_link_options(engine PRIVATE ${EMSCRIPTEN_FLAGS} --no-entry -sMODULARIZE=1 -sEXPORT_ES6=1 -sENVIRONMENT=web,worker,node
  -sEXPORTED_RUNTIME_METHODS=FS,ENV,ccall -sFORCE_FILESYSTEM=1 -lnodefs.js
  "SHELL:--extern-pre-js ${CMAKE_CURRENT_SOURCE_DIR}/cmake/node_names.js")

# The list of checksums, compared where the engine runs: every row has to be that of the native program.
if(GLYPHMOTION_TESTS)
  set(googletest /usr/src/googletest/googletest)
  add_executable(web_checksums tests/checksums/checksums_test.cpp ${googletest}/src/gtest-all.cc ${googletest}/src/gtest_main.cc)
  set_target_properties(web_checksums PROPERTIES SUFFIX .cjs)
  target_include_directories(web_checksums SYSTEM PRIVATE ${googletest}/include ${googletest})
  target_include_directories(web_checksums PRIVATE tests)
  target_compile_definitions(web_checksums PRIVATE GLYPHMOTION_SOURCE_DIR="/source")
  target_link_libraries(web_checksums PRIVATE glyphmotion_settings glyphmotion_host)
  target_link_options(web_checksums PRIVATE -O1 ${EMSCRIPTEN_FLAGS} -sENVIRONMENT=node -sEXIT_RUNTIME=1 -lnodefs.js
    "SHELL:--pre-js ${CMAKE_CURRENT_SOURCE_DIR}/tests/web/mounts.js")
endif()
