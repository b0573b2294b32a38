# Flags that every target of this project shares.
#
# -ffp-contract=off and the absence of -ffast-math are promises: the same job gives the same bytes on every machine.
add_library(glyphmotion_settings INTERFACE)
target_compile_features(glyphmotion_settings INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)

# The library's objects serve the static and the shared library; only what is marked GLYPHMOTION_EXPORT is shown.
if(NOT WIN32)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  set(CMAKE_CXX_VISIBILITY_PRESET hidden)
  set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
endif()

get_property(several_configurations GLOBAL PROPERTY GENERATOR_IS_MULTI_CONFIG)
if(NOT CMAKE_BUILD_TYPE AND NOT several_configurations)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo or MinSizeRel" FORCE)
endif()

if(MSVC)
  target_compile_options(glyphmotion_settings INTERFACE /W4 /utf-8 /fp:precise)  # not tried yet: warnings stop nothing
  target_compile_definitions(glyphmotion_settings INTERFACE NOMINMAX _CRT_SECURE_NO_WARNINGS)
else()
  target_compile_options(glyphmotion_settings INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor
    $<$<BOOL:${GLYPHMOTION_WERROR}>:-Werror> -ffp-contract=off $<$<CONFIG:Release>:-O3>)
  # GCC 12 warns of overlap in its own std::string at -O3 (its bug 105651).
  target_compile_options(glyphmotion_settings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endif()

# What is made here needs no runtime library beside the system's own.
if(MINGW)
  add_link_options(-static)
elseif(MSVC)
  add_link_options(/MANIFEST:NO)  # the programs have their own among their resources
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
endif()

if(GLYPHMOTION_SANITIZE STREQUAL "thread")
  target_compile_options(glyphmotion_settings INTERFACE -fsanitize=thread -fno-omit-frame-pointer -O1)
  target_link_options(glyphmotion_settings INTERFACE -fsanitize=thread)
  target_compile_definitions(glyphmotion_settings INTERFACE GLYPHMOTION_CLONES=)
elseif(GLYPHMOTION_SANITIZE)
  target_compile_options(glyphmotion_settings INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer -O1)
  target_link_options(glyphmotion_settings INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(glyphmotion_settings INTERFACE GLYPHMOTION_CLONES=)
elseif(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU"
       AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  # Functions marked GLYPHMOTION_CLONES are compiled for AVX2 too and picked at start. Contraction is off, so the
  # clones do the same operations in the same order.
  target_compile_definitions(glyphmotion_settings INTERFACE
    "GLYPHMOTION_CLONES=__attribute__((target_clones(\"avx2\",\"default\")))")
else()
  target_compile_definitions(glyphmotion_settings INTERFACE GLYPHMOTION_CLONES=)
endif()

# optimise_little(SOURCES... FOLDERS FOLDERS...): the sources in these folders wait for people and files; the time that
# matters there is the compiler's.
function(optimise_little)
  cmake_parse_arguments(PARSE_ARGV 0 given "" "" FOLDERS)
  if(MSVC OR NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    return()
  endif()
  foreach(folder ${given_FOLDERS})
    set(sources ${given_UNPARSED_ARGUMENTS})
    list(FILTER sources INCLUDE REGEX "/${folder}/")
    set_property(SOURCE ${sources} APPEND PROPERTY COMPILE_OPTIONS -O1)
  endforeach()
endfunction()
