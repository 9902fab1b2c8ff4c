# zv_library(<folder> NAME <name> DEPENDS <floor>...)
#
# A shared library for hosts, of the sources of a folder and the floors that it is given. It lets out what the
# folder's exports.map names and nothing else.
function(zv_library folder)
  cmake_parse_arguments(ARG "" "NAME" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
  add_library(${ARG_NAME} SHARED ${sources})
  set(map ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/exports.map)
  target_link_options(${ARG_NAME} PRIVATE -Wl,--version-script=${map})
  set_target_properties(${ARG_NAME} PROPERTIES LINK_DEPENDS ${map})
  target_link_libraries(${ARG_NAME} PRIVATE zv_warnings)
  zv_precompile(${ARG_NAME} standard)
  foreach(below IN LISTS ARG_DEPENDS)
    if(TARGET zv_${below})
      target_link_libraries(${ARG_NAME} PRIVATE zv_${below})
    endif()
  endforeach()
endfunction()
