# add_checksums_test(TARGET SOURCE): the list of checksums, compared where the target runs and finds the sources in the
# folder SOURCE, with the fonts that the build has in checksum_fonts. Every row has to be that of the native program.
function(add_checksums_test target source)
  file(GLOB fonts /usr/share/fonts/truetype/liberation/*.ttf)
  file(COPY ${fonts} /usr/share/fonts/truetype/wqy/wqy-zenhei.ttc DESTINATION ${CMAKE_BINARY_DIR}/checksum_fonts)
  set(googletest /usr/src/googletest/googletest)
  add_executable(${target} tests/checksums/checksums_test.cpp ${googletest}/src/gtest-all.cc ${googletest}/src/gtest_main.cc)
  target_include_directories(${target} SYSTEM PRIVATE ${googletest}/include ${googletest})
  target_include_directories(${target} PRIVATE tests ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_compile_definitions(${target} PRIVATE GLYPHMOTION_SOURCE_DIR="${source}")
  target_link_libraries(${target} PRIVATE glyphmotion_settings glyphmotion)
endfunction()
