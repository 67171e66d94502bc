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

vx_precompile(TARGETS vx-clone-objects HEADERS <boost/filesystem.hpp> <json/json.h> <fstream>)
vx_precompile(
  TARGETS vxtv-television vx-virtual-tv vxtv-hotel-app vxtv-show
  HEADERS <SQLiteCpp/SQLiteCpp.h> <nlohmann/json.hpp> <fmt/format.h>)
vx_precompile(
  TARGETS vxtv-commands vxtv-session vxclone-commands vx-pages vxclone-manual vxtv-manual
  HEADERS <CLI/CLI.hpp> <nlohmann/json.hpp>)
vx_precompile(TARGETS vxclone-app HEADERS <nlohmann/json.hpp> <fmt/format.h>)
vx_precompile(
  TARGETS vx-clone-tests
  HEADERS <boost/filesystem.hpp> <gmock/gmock.h> <gtest/gtest.h> <json/json.h>)
vx_precompile(
  TARGETS vxtv-unit-tests vxtv-application-unit-tests vxtv-show-tests vxclone-unit-tests vx-clone-integration-tests
  vx-session-tests vx-application-tests vx-contract-scripted-tests vx-contract-virtual-tests
  HEADERS <gmock/gmock.h> <gtest/gtest.h> <nlohmann/json.hpp>)
