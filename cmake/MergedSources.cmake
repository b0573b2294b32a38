# merge_sources(LIST): with GLYPHMOTION_MERGE, replaces the sources of each folder in this list by one that includes them;
# most of what the compiler reads is headers. Files with flags of their own stay alone, and so do effects, for a short
# build after a change to one. Without GLYPHMOTION_MERGE a test checks that it would compile.
#
# These have helpers whose names others in their folder use as well.
set(sources_alone
  "src/image/(colour_cells|quantise|resample_filters|surface)"
  "src/materials/(shipped|surface_texture|texture_library|tile)"
  "src/controls/(fountain|gradient_dialog|library_editor|material|texture|tile).*"
  "src/shell/(exports|main_dialog|registration)"
  "src/effects/(colour_blend|iris_mask|twist)"
  "src/resources/.*"
  "host/encoders/(gif_writer|lzw_lossy|webp_encoder)"
  "host/encoders/(avif|webm).*"  # the fast program has its own instead
  "host/page/(command_words|page_fonts|page_session)"
  "host/program/swatch"
  "host/quick/full_program"  # a second program has it, too
  "host/render/run_notes")
list(JOIN sources_alone "|" sources_alone)

function(merge_sources list)
  foreach(source ${${list}})
    cmake_path(ABSOLUTE_PATH source)
    file(RELATIVE_PATH name ${CMAKE_CURRENT_SOURCE_DIR} ${source})
    get_source_file_property(definitions ${source} COMPILE_DEFINITIONS)
    file(STRINGS ${source} is_effect REGEX "^const EffectDescriptor " LIMIT_COUNT 1)
    if(definitions OR is_effect OR name MATCHES "^(${sources_alone})\\.cpp$")
      list(APPEND alone ${source})
    else()
      get_filename_component(folder ${name} DIRECTORY)
      list(APPEND folders ${folder})
      list(APPEND ${folder}_sources ${source})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES folders)
  foreach(folder ${folders})
    list(TRANSFORM ${folder}_sources REPLACE "(.+)" "#include \"\\1\"" OUTPUT_VARIABLE includes)
    list(JOIN includes "\n" includes)
    set(file ${CMAKE_BINARY_DIR}/merged/${folder}/${list}.cpp)
    file(CONFIGURE OUTPUT ${file} CONTENT "${includes}\n" @ONLY)
    list(GET ${folder}_sources 0 first)
    get_source_file_property(options ${first} COMPILE_OPTIONS)
    if(NOT options)
      set(options "")
    endif()
    set_source_files_properties(${file} PROPERTIES COMPILE_OPTIONS "${options};-Wno-subobject-linkage")
    set_property(GLOBAL APPEND PROPERTY merged_sources ${file})
    list(APPEND merged ${file})
  endforeach()
  if(GLYPHMOTION_MERGE)
    set(${list} ${alone} ${merged} PARENT_SCOPE)
  endif()
endfunction()
