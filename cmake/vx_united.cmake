# Nobody works on a machine's run file by file: it compiles the large test programs a few sources at a time.
# Sources that are built both ways share no names by chance.

option(VX_UNITE_TESTS "Compile the sources of tests several at a time" OFF)

if(BUILD_TESTING AND VX_UNITE_TESTS)
  foreach(target
      vx-clone-integration-tests vx-clone-tests vx-contract-scripted-tests vx-contract-virtual-tests
      vx-hostile-tests vx-scripted-platform vx-session-tests vx-sweep-storage vxclone-unit-tests
      vxtv-application-unit-tests vxtv-show-tests vxtv-unit-tests)
    if(TARGET ${target})
      set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
    endif()
  endforeach()
endif()
