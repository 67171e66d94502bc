# JsonCpp in place of the system's, from the source of the distribution's package, which scripts/fuzz puts here:
# instrumented like the library, so that its branches guide the fuzzer and its accesses are checked.

file(GLOB VX_JSONCPP_SOURCE ${PROJECT_BINARY_DIR}/jsoncpp/libjsoncpp-*/src/lib_json)
if(NOT VX_JSONCPP_SOURCE)
  message(FATAL_ERROR "The source of JsonCpp is not in ${PROJECT_BINARY_DIR}/jsoncpp: scripts/fuzz fetches it.")
endif()

add_library(vx-fuzz-jsoncpp STATIC
  ${VX_JSONCPP_SOURCE}/json_reader.cpp
  ${VX_JSONCPP_SOURCE}/json_value.cpp
  ${VX_JSONCPP_SOURCE}/json_writer.cpp)
target_include_directories(vx-fuzz-jsoncpp SYSTEM PUBLIC ${VX_JSONCPP_SOURCE}/../../include)
target_compile_features(vx-fuzz-jsoncpp PUBLIC cxx_std_17)
target_compile_options(vx-fuzz-jsoncpp PRIVATE -w)
target_link_libraries(vx-fuzz-jsoncpp PRIVATE vx_options)
add_library(PkgConfig::JSONCPP ALIAS vx-fuzz-jsoncpp)
