# The library as a WebAssembly module for pages and Node, and the program as one for the package's command.
# What loops over pixels is compiled for speed, the effects for some of it, the rest for size.
set_property(SOURCE ${engine_sources} APPEND PROPERTY COMPILE_OPTIONS -fno-rtti)
set(small_sources ${engine_sources})
set(fast_sources ${engine_sources})
list(FILTER fast_sources INCLUDE REGEX "src/(image|materials|text)/|encoders/(lzw|gif_frame|gif_held_frame|gif_lossy|gif_writer)\\.cpp|web/(fast_vectors|memcmp)\\.cpp")
list(FILTER fast_sources EXCLUDE REGEX "materials/(.*_text|text_parts|shipped|.*library.*|material_cache)\\.cpp")
set(effect_sources ${engine_sources})
list(FILTER effect_sources INCLUDE REGEX "src/effects/")
list(REMOVE_ITEM small_sources ${fast_sources} ${effect_sources})
set_property(SOURCE ${fast_sources} APPEND PROPERTY COMPILE_OPTIONS -O2)
set_property(SOURCE ${effect_sources} APPEND PROPERTY COMPILE_OPTIONS -O2)
set_property(SOURCE ${small_sources} APPEND PROPERTY COMPILE_OPTIONS -Oz)
set_property(SOURCE ${engine_sources} APPEND PROPERTY COMPILE_OPTIONS
  -include ${CMAKE_CURRENT_SOURCE_DIR}/src/platform/web/fast_vectors.h)
# A module has one thread. With bulk memory the compiler would have variables of a thread in memory that threads share.
set_property(SOURCE src/platform/portable/thread_state.cpp src/platform/run_state.cpp src/platform/web/font_families.cpp
  APPEND PROPERTY COMPILE_OPTIONS -mno-bulk-memory)
# Without the streams of the C++ library, whose locales are a tenth of a module.
set_property(SOURCE host/options/looks.cpp APPEND PROPERTY COMPILE_OPTIONS
  -include ${CMAKE_CURRENT_SOURCE_DIR}/src/platform/web/from_chars.h -DTOML_FLOAT_CHARCONV=1 -DTOML_INT_CHARCONV=1)
set(module_flags -sALLOW_MEMORY_GROWTH=1 -sINITIAL_MEMORY=32MB -fexceptions)
# Only words that people write are refused by an exception. Everywhere else one means that memory has run out, which ends
# a module: its owner opens another.
set(refusing_sources ${engine_sources})
list(FILTER refusing_sources INCLUDE REGEX "host/options/")
list(APPEND refusing_sources bindings/c/c_api.cpp)
set_property(SOURCE ${refusing_sources} APPEND PROPERTY COMPILE_OPTIONS -fexceptions)

function(add_module name)
  add_executable(${name} ${ARGN})
  set_target_properties(${name} PROPERTIES SUFFIX .mjs)
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_link_libraries(${name} PRIVATE glyphmotion_settings glyphmotion)
  target_compile_options(${name} PRIVATE -Oz -fno-rtti)
  # -Oz would bring a memcpy and a memset of single bytes.
  target_link_options(${name} PRIVATE ${module_flags} -Os --no-entry -sMODULARIZE=1 -sEXPORT_ES6=1 -sFORCE_FILESYSTEM=1
    -sDYNAMIC_EXECUTION=0)
endfunction()

# A module for pages and for Node, with the files of both.
function(add_package_module name)
  add_module(${name} ${ARGN})
  target_link_options(${name} PRIVATE -sENVIRONMENT=web,worker,node
    -sEXPORTED_RUNTIME_METHODS=FS,ENV,ccall,UTF8ToString,getValue -lnodefs.js
    "SHELL:--extern-pre-js ${CMAKE_CURRENT_SOURCE_DIR}/cmake/node_names.js")
  set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/cmake/node_names.js)
endfunction()

add_package_module(engine host/web/library.cpp bindings/c/c_api.cpp)
set(api _malloc _free _GlyphmotionOptionTable)
foreach(call options formats job_new job_free job_set job_error job_note render_to_memory)
  list(APPEND api _glyphmotion_${call})
endforeach()
list(JOIN api "," api)
target_link_options(engine PRIVATE "-sEXPORTED_FUNCTIONS=${api}")

file(GLOB program_sources CONFIGURE_DEPENDS host/recording/*.cpp host/program/*.cpp)
list(FILTER program_sources EXCLUDE REGEX "host/program/(batch.*|edit|main)\\.cpp$")
add_package_module(program EXCLUDE_FROM_ALL host/web/program.cpp host/web/left_out.cpp ${program_sources})
target_compile_options(program PRIVATE -fexceptions -frtti)
target_link_libraries(program PRIVATE CLI11::CLI11 nlohmann_json::nlohmann_json tomlplusplus::tomlplusplus)
target_link_options(program PRIVATE -sEXPORTED_FUNCTIONS=_malloc,_free,_GlyphmotionRun)

# The page's dialog and the work beside it. A file of host/web replaces the one of its name in host/page; what a page does
# not need stays out. The dialog waits in the middle of its calls, so its stack can be put aside.
file(GLOB page_sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} host/page/*.cpp)
list(FILTER page_sources EXCLUDE REGEX
  "/(event_queue|work_beside|live_build|zip_folder|page_server|guarded_stream|session_hall)\\.cpp$")
set(page_exports _malloc _free)
foreach(call Page Post Upload Work)
  list(APPEND page_exports _Glyphmotion${call})
endforeach()
list(JOIN page_exports "," page_exports)
set_source_files_properties(host/web/page_words.cpp PROPERTIES COMPILE_OPTIONS -fexceptions)
add_module(page host/web/page.cpp host/web/page_words.cpp host/web/orders.cpp host/web/event_queue.cpp
  host/web/work_beside.cpp host/web/zip_folder.cpp ${page_sources})
target_link_libraries(page PRIVATE nlohmann_json::nlohmann_json own::minizip)
set(shipped ${CMAKE_CURRENT_SOURCE_DIR}/share/glyphmotion)
target_link_options(page PRIVATE -sENVIRONMENT=worker -sEXPORTED_RUNTIME_METHODS=FS,ccall
  -sEXPORTED_FUNCTIONS=${page_exports} -sASYNCIFY=1 -sASYNCIFY_STACK_SIZE=65536
  -sASYNCIFY_REMOVE=@never_waits_option
  "SHELL:--preload-file ${shipped}@/share/glyphmotion --exclude-file *.HTML")
file(GLOB_RECURSE page_files CONFIGURE_DEPENDS ${shipped}/*)
set_property(TARGET page APPEND PROPERTY LINK_DEPENDS ${page_files} ${CMAKE_CURRENT_SOURCE_DIR}/cmake/never_waits.mjs)
find_program(GLYPHMOTION_NODE NAMES node nodejs REQUIRED)
find_program(GLYPHMOTION_NM NAMES llvm-nm llvm-nm-14 REQUIRED CMAKE_FIND_ROOT_PATH_BOTH)
add_custom_command(TARGET page PRE_LINK COMMAND ${GLYPHMOTION_NODE} ${CMAKE_CURRENT_SOURCE_DIR}/cmake/never_waits.mjs
  ${GLYPHMOTION_NM} never_waits)

if(GLYPHMOTION_TESTS)
  include(ChecksumsTest)
  add_checksums_test(web_checksums /source)
  set_target_properties(web_checksums PROPERTIES SUFFIX .cjs)
  target_link_options(web_checksums PRIVATE -O1 ${module_flags} -sENVIRONMENT=node -sEXIT_RUNTIME=1 -lnodefs.js
    "SHELL:--pre-js ${CMAKE_CURRENT_SOURCE_DIR}/tests/web/mounts.js")
endif()
