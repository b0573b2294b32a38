# The program as a WebAssembly module.
file(GLOB host_sources CONFIGURE_DEPENDS host/encoders/*.cpp host/recording/*.cpp host/program/*.cpp host/web/*.cpp)
list(FILTER host_sources EXCLUDE REGEX "host/program/(edit|main)\\.cpp$")
add_executable(engine ${host_sources})
target_include_directories(engine PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/src)
target_link_libraries(engine PRIVATE glyphmotion_settings glyphmotion PNG::PNG PkgConfig::WEBP CLI11::CLI11
  nlohmann_json::nlohmann_json)
