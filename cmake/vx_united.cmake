# Nobody works on a machine's run file by file, nor on programs that are only to be used: both are compiled
# several sources at a time. Sources that are built both ways share no names by chance.

option(VX_UNITE_PROGRAMS "Compile the sources of the library and of the programs several at a time" OFF)
option(VX_UNITE_TESTS "Compile the sources of tests several at a time" OFF)

# The sources of each folder of a target together, in equal parts of at most so many.
function(vx_unite_folders most)
  foreach(target ${ARGN})
    get_target_property(base ${target} SOURCE_DIR)
    get_target_property(sources ${target} SOURCES)
    set(folders "")
    foreach(source ${sources})
      get_filename_component(path ${source} ABSOLUTE BASE_DIR ${base})
      get_filename_component(folder ${path} DIRECTORY)
      string(MAKE_C_IDENTIFIER ${folder} folder)
      list(APPEND folders ${folder})
      list(APPEND ${target}_${folder} ${path})
    endforeach()
    list(REMOVE_DUPLICATES folders)
    foreach(folder ${folders})
      list(LENGTH ${target}_${folder} count)
      math(EXPR parts "(${count} + ${most} - 1) / ${most}")
      set(place 0)
      foreach(path ${${target}_${folder}})
        math(EXPR part "${place} * ${parts} / ${count}")
        set_source_files_properties(${path} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${folder}_${part})
        math(EXPR place "${place} + 1")
      endforeach()
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  endforeach()
endfunction()

if(VX_UNITE_PROGRAMS)
  vx_unite_folders(24 vx-clone-objects)
  if(NOT VX_DEVICE_ONLY)
    vx_unite_folders(24
      hotel_app vx-common vx-pages vx-virtual-tv vxclone-app vxclone-commands vxtv-app-host vxtv-hotel-app vxtv-ports
      vxtv-session vxtv-show)
    # Of small folders, which would be too many parts.
    set_target_properties(vxtv-commands vxtv-factory vxtv-process vxtv-services vxtv-television
      PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 24)
  endif()
endif()

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
