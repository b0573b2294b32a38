# The libraries of builds for machines that Debian has no packages for, compiled from the sources that
# scripts/fetch-libraries unpacks below GLYPHMOTION_LIBRARY_SOURCES, under the names that find_package and pkg-config give
# them elsewhere.
set(GLYPHMOTION_LIBRARY_SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/build/library-sources CACHE PATH "Unpacked sources of the libraries")
set(CMAKE_POSITION_INDEPENDENT_CODE OFF)
if(EMSCRIPTEN)  # what every browser with SIMD has
  add_compile_options(-msimd128 -mbulk-memory -msign-ext)
endif()
set(made ${CMAKE_BINARY_DIR}/libraries)

function(find_sources variable library)
  file(GLOB folder ${GLYPHMOTION_LIBRARY_SOURCES}/${library}-*)
  if(NOT IS_DIRECTORY "${folder}")
    message(FATAL_ERROR "The sources of ${library} are missing; run scripts/fetch-libraries.")
  endif()
  set(${variable} ${folder} PARENT_SCOPE)
endfunction()

function(add_own_library target)
  cmake_parse_arguments(ARG "" "ALIAS" "INCLUDE;SOURCES;DEFINITIONS;OPTIONS" ${ARGN})
  add_library(${target} STATIC ${ARG_SOURCES})
  add_library(${ARG_ALIAS} ALIAS ${target})
  target_include_directories(${target} SYSTEM PUBLIC ${ARG_INCLUDE})
  target_compile_definitions(${target} PRIVATE ${ARG_DEFINITIONS})
  target_compile_options(${target} PRIVATE -w -ffp-contract=off ${ARG_OPTIONS})
endfunction()

find_sources(zlib zlib)
file(GLOB sources ${zlib}/*.c)
add_own_library(own_zlib ALIAS ZLIB::ZLIB INCLUDE ${zlib} SOURCES ${sources} DEFINITIONS HAVE_UNISTD_H OPTIONS -O2)

# Archives, which come with zlib's source.
add_own_library(own_minizip ALIAS own::minizip INCLUDE ${zlib}/contrib/minizip
  SOURCES ${zlib}/contrib/minizip/zip.c ${zlib}/contrib/minizip/ioapi.c DEFINITIONS USE_FILE32API NOCRYPT OPTIONS -Oz)
target_link_libraries(own_minizip PUBLIC own_zlib)

find_sources(png libpng1.6)
configure_file(${png}/scripts/pnglibconf.h.prebuilt ${made}/png/pnglibconf.h COPYONLY)
file(GLOB sources ${png}/png*.c)
list(FILTER sources EXCLUDE REGEX "pngtest\\.c$")
add_own_library(own_png ALIAS PNG::PNG INCLUDE ${png} ${made}/png SOURCES ${sources} OPTIONS -Oz)
target_link_libraries(own_png PUBLIC own_zlib)

find_sources(webp libwebp)
file(GLOB sources ${webp}/src/dec/*.c ${webp}/src/enc/*.c ${webp}/src/utils/*.c ${webp}/src/mux/*.c ${webp}/src/dsp/*.c
  ${webp}/sharpyuv/*.c)
set(others sse41|neon|msa|mips32|mips_dsp_r2)
if(EMSCRIPTEN)
  set(others sse2|${others})
endif()
list(FILTER sources EXCLUDE REGEX "_(${others})\\.c$")
add_own_library(own_webp ALIAS PkgConfig::WEBP INCLUDE ${webp}/src SOURCES ${sources} OPTIONS -Os)
set(rarely_used ${sources})
list(FILTER rarely_used INCLUDE REGEX "/src/(dec|mux|utils)/")
set_property(SOURCE ${rarely_used} APPEND PROPERTY COMPILE_OPTIONS -Oz)
target_include_directories(own_webp PRIVATE ${webp})

# Fonts of TrueType and OpenType. The smooth rasteriser has two subdivisions of curves and picks one by the machine's
# name; this name gives that of 64-bit machines, and with it their bytes.
find_sources(freetype freetype)
set(sources "")
foreach(file base/ftbase base/ftbbox base/ftbitmap base/ftdebug base/ftglyph base/ftinit base/ftmm base/ftstroke base/ftsynth
    base/ftsystem cff/cff gzip/ftgzip psaux/psaux psnames/psnames raster/raster sfnt/sfnt smooth/smooth
    truetype/truetype)
  list(APPEND sources ${freetype}/src/${file}.c)
endforeach()
set_source_files_properties(${freetype}/src/smooth/smooth.c PROPERTIES COMPILE_DEFINITIONS __aarch64__ COMPILE_OPTIONS -O2)
# Glyphs are never hinted, and only of the formats below. On the web, characters come from a font's Unicode map alone and
# not from the names of its glyphs, whose list is 28 KB compressed.
set(web_alone "")
if(EMSCRIPTEN)
  set(web_alone FT_CONFIG_OPTION_ADOBE_GLYPH_LIST)
endif()
file(WRITE ${made}/freetype/ftoptions.h "#include <freetype/config/ftoption.h>\n")
foreach(option TT_CONFIG_OPTION_BYTECODE_INTERPRETER TT_USE_BYTECODE_INTERPRETER TT_CONFIG_OPTION_SUBPIXEL_HINTING
    TT_SUPPORT_SUBPIXEL_HINTING_INFINALITY TT_SUPPORT_SUBPIXEL_HINTING_MINIMAL TT_CONFIG_OPTION_BDF FT_CONFIG_OPTION_MAC_FONTS
    FT_CONFIG_OPTION_USE_LZW FT_CONFIG_OPTION_INCREMENTAL ${web_alone})
  file(APPEND ${made}/freetype/ftoptions.h "#undef ${option}\n")
endforeach()
file(WRITE ${made}/freetype/ftmodules.h "\
FT_USE_MODULE( FT_Driver_ClassRec, tt_driver_class )
FT_USE_MODULE( FT_Driver_ClassRec, cff_driver_class )
FT_USE_MODULE( FT_Module_Class, psaux_module_class )
FT_USE_MODULE( FT_Module_Class, psnames_module_class )
FT_USE_MODULE( FT_Module_Class, sfnt_module_class )
FT_USE_MODULE( FT_Renderer_Class, ft_smooth_renderer_class )
FT_USE_MODULE( FT_Renderer_Class, ft_raster1_renderer_class )
")
add_own_library(own_freetype ALIAS Freetype::Freetype INCLUDE ${made}/freetype ${freetype}/include SOURCES ${sources}
  DEFINITIONS FT2_BUILD_LIBRARY FT_CONFIG_OPTION_SYSTEM_ZLIB FT_CONFIG_OPTION_USE_PNG "FT_CONFIG_MODULES_H=<ftmodules.h>"
    "FT_CONFIG_OPTIONS_H=<ftoptions.h>"
  OPTIONS -Oz)
target_link_libraries(own_freetype PUBLIC own_png)

find_sources(harfbuzz harfbuzz)
add_own_library(own_harfbuzz ALIAS PkgConfig::HARFBUZZ INCLUDE ${harfbuzz}/src SOURCES ${harfbuzz}/src/harfbuzz.cc
  DEFINITIONS HB_DISABLE_DEPRECATED HB_NDEBUG HB_NO_BUFFER_MESSAGE HB_NO_BUFFER_SERIALIZE HB_NO_BUFFER_VERIFY HB_NO_COLOR
    HB_NO_DRAW HB_NO_GETENV HB_NO_LAYOUT_COLLECT_GLYPHS HB_NO_LAYOUT_UNUSED HB_NO_MATH HB_NO_META HB_NO_METRICS HB_NO_MMAP
    HB_NO_NAME HB_NO_OT_FONT_GLYPH_NAMES HB_NO_FACE_COLLECT_UNICODES HB_NO_ATEXIT HB_NO_ERRNO HB_NO_SETLOCALE HB_NO_STYLE HB_NO_VERTICAL HB_NO_LANGUAGE_LONG HB_OPTIMIZE_SIZE
    __PRETTY_FUNCTION__=nullptr  # 130 KB of names for traces
  OPTIONS -Oz -fno-exceptions -fno-rtti -fno-threadsafe-statics)

find_sources(fribidi fribidi)
file(GLOB sources ${fribidi}/lib/*.c)
list(FILTER sources EXCLUDE REGEX "char-sets")
set(PACKAGE fribidi)
set(SIZEOF_INT 4)
set(FRIBIDI_MAJOR_VERSION 1)
set(FRIBIDI_MINOR_VERSION 0)
set(FRIBIDI_MICRO_VERSION 8)
set(FRIBIDI_INTERFACE_VERSION 4)
configure_file(${fribidi}/lib/fribidi-config.h.in ${made}/fribidi/fribidi-config.h @ONLY)
add_own_library(own_fribidi ALIAS PkgConfig::FRIBIDI INCLUDE ${made}/fribidi ${fribidi}/lib SOURCES ${sources} OPTIONS -Oz
  DEFINITIONS HAVE_STRINGIZE HAVE_STRING_H HAVE_STDLIB_H DONT_HAVE_FRIBIDI_CONFIG_H=0)

file(MAKE_DIRECTORY ${made}/headers)
# Headers alone, which Debian's packages install for every compiler.
foreach(folder CLI nlohmann toml++)
  file(CREATE_LINK /usr/include/${folder} ${made}/headers/${folder} SYMBOLIC)
endforeach()
foreach(name CLI11 nlohmann_json tomlplusplus)
  add_library(own_${name} INTERFACE)
  target_include_directories(own_${name} SYSTEM INTERFACE ${made}/headers)
  add_library(${name}::${name} ALIAS own_${name})
endforeach()
set(TOMLPLUSPLUS_INCLUDE_DIRS ${made}/headers)
