# The large headers of other people, read once for each target instead of once for each source. Only such
# headers: our own sources include what they use, which a build without this option shows.

option(VX_PRECOMPILE "Precompile the large headers of other projects" ON)

function(vx_precompile)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "TARGETS;HEADERS")
  if(VX_PRECOMPILE)
    foreach(target ${arg_TARGETS})
      if(TARGET ${target})
        target_precompile_headers(${target} PRIVATE ${arg_HEADERS})
      endif()
    endforeach()
  endif()
endfunction()

# Read once for several targets, which then are compiled alike.
function(vx_precompile_together name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "CODE" "TARGETS;HEADERS;LIBRARIES")
  if(VX_PRECOMPILE)
    set(source ${PROJECT_BINARY_DIR}/${name}.cpp)
    file(GENERATE OUTPUT ${source} CONTENT "")
    add_library(${name} OBJECT ${source})
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${name} PRIVATE ${arg_CODE})
    target_link_libraries(${name} PRIVATE vx_modern ${arg_LIBRARIES})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
    foreach(target ${arg_TARGETS})
      if(TARGET ${target})
        target_precompile_headers(${target} REUSE_FROM ${name})
      endif()
    endforeach()
  endif()
endfunction()

vx_precompile(TARGETS vx-clone-objects HEADERS <boost/filesystem.hpp> <json/json.h> <fstream>)
if(VX_UNITE_PROGRAMS AND TARGET vxtv)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  # Few sources are left of each target, which would not make up for headers of its own. The programs' own
  # sources are compiled as those of the libraries are.
  vx_precompile_together(vx-program-headers CODE -fPIC
    HEADERS <CLI/CLI.hpp> <filesystem> <nlohmann/json.hpp>
    LIBRARIES CLI11::CLI11 nlohmann_json::nlohmann_json
    TARGETS vxtv vxtv-app-host vxtv-commands vxtv-factory vxtv-hotel-app vxtv-manual vxtv-ports vxtv-process vxtv-services
      vxtv-session vxtv-show vxtv-television hotel_app vx-command-line vx-common vx-pages vx-virtual-tv vxclone vxclone-app vxclone-commands vxclone-manual)
  foreach(program vxtv vxtv-app-host hotel_app vxclone)
    target_compile_options(${program} PRIVATE -fPIC)
  endforeach()
else()
  vx_precompile(
    TARGETS vxtv-television vxtv-services vxtv-factory vx-virtual-tv vxtv-hotel-app vxtv-show
    HEADERS <SQLiteCpp/SQLiteCpp.h> <nlohmann/json.hpp> <fmt/format.h>)
  vx_precompile(
    TARGETS vx-command-line vxtv-commands vxtv-session vxclone-commands vx-pages vxclone-manual vxtv-manual
    HEADERS <CLI/CLI.hpp> <nlohmann/json.hpp>)
  vx_precompile(TARGETS vxclone-app HEADERS <nlohmann/json.hpp> <fmt/format.h>)
endif()
vx_precompile(
  TARGETS vx-clone-tests
  HEADERS <boost/filesystem.hpp> <gmock/gmock.h> <gtest/gtest.h> <json/json.h>)

if(BUILD_TESTING AND TARGET vxtv-unit-tests)
  find_package(GTest REQUIRED)
  find_package(nlohmann_json REQUIRED)
  vx_precompile_together(vx-test-headers CODE -fPIE
    HEADERS <gmock/gmock.h> <gtest/gtest.h> <nlohmann/json.hpp>
    LIBRARIES GTest::gmock nlohmann_json::nlohmann_json
    TARGETS vxtv-unit-tests vxtv-application-unit-tests vxtv-show-tests vxclone-unit-tests vx-clone-integration-tests
      vx-session-tests vx-application-tests vx-contract-scripted-tests vx-contract-virtual-tests vx-documents-tests
      vx-hostile-tests vx-sweep-calls vx-sweep-storage vx-sweep-system vx-terminal-tests)
endif()
