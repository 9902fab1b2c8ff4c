# zv_together(<target>)
#
# With ZV_TOGETHER, compiles the sources of a target one behind the other in files of a dozen, so that their headers are
# read once: for a build that is made once and whole. What a source lacks of our headers, one before it may have included;
# the default build, which takes them one by one, says so.
function(zv_together target)
  if(NOT ZV_TOGETHER)
    return()
  endif()
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  get_target_property(folder ${target} SOURCE_DIR)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  list(TRANSFORM sources PREPEND ${folder}/ REGEX "^[^/]")
  set(tool ${PROJECT_SOURCE_DIR}/tools/batches.py)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${tool})
  execute_process(COMMAND ${Python3_EXECUTABLE} ${tool} ${sources} OUTPUT_VARIABLE batches
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE ";" "|" batches "${batches}")
  string(REPLACE "\n" ";" batches "${batches}")
  set(group 0)
  foreach(batch IN LISTS batches)
    string(REPLACE "|" ";" batch "${batch}")
    math(EXPR group "${group} + 1")
    set_source_files_properties(${batch} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${group})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
