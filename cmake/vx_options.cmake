# What every target of this project is compiled with, in one place.

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_program(VX_CCACHE ccache)
if(VX_CCACHE)
  # Sources that use a precompiled header are cached only with these two told.
  set(CMAKE_C_COMPILER_LAUNCHER ${VX_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${VX_CCACHE})
endif()

add_library(vx_options INTERFACE)
target_compile_options(vx_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wformat=2 -Wcast-align -Wundef
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast>
  $<$<BOOL:${VX_WARNINGS_ARE_ERRORS}>:-Werror>
  -fstack-protector-strong)
if(VX_SANITIZE)
  target_compile_options(vx_options INTERFACE -fsanitize=${VX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(vx_options INTERFACE -fsanitize=${VX_SANITIZE})
elseif(VX_COVERAGE)
  target_compile_options(vx_options INTERFACE --coverage -fprofile-update=atomic)
  add_library(vx_coverage STATIC ${PROJECT_SOURCE_DIR}/tests/support/coverage/exit.c)
  # Asked for by name, because libraries that call it may come behind it.
  target_link_options(vx_options INTERFACE --coverage -Wl,--wrap=_exit,--undefined=__wrap__exit)
  target_link_libraries(vx_options INTERFACE vx_coverage)
elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
  target_compile_definitions(vx_options INTERFACE _FORTIFY_SOURCE=2)
endif()
target_link_options(vx_options INTERFACE -Wl,-z,relro,-z,now)

# The tools, the virtual television and the tests: C++20 and free to be modern.
add_library(vx_modern INTERFACE)
target_link_libraries(vx_modern INTERFACE vx_options)
target_compile_features(vx_modern INTERFACE cxx_std_20)
