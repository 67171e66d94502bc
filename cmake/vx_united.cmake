# Nobody works on a machine's run file by file: it compiles the largest test programs a few sources at a time.
# Sources that are built both ways share no names by chance.

option(VX_UNITE_TESTS "Compile the sources of unit tests several at a time" OFF)

if(BUILD_TESTING AND VX_UNITE_TESTS)
  foreach(target vxtv-unit-tests vxtv-application-unit-tests vxtv-show-tests vxclone-unit-tests)
    if(TARGET ${target})
      set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
    endif()
  endforeach()
endif()
