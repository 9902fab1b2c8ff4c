include(${PROJECT_SOURCE_DIR}/cmake/ZvTypes.cmake)

# zv_library(<folder> NAME <name> DEPENDS <floor>...)
#
# A shared library for hosts, of the sources of a folder and the floors that it is given. It lets out what the
# folder's list of exports names (exports.map, on Windows exports.def) and nothing else. On Windows it has resources
# besides, and a manifest beside it.
function(zv_library folder)
  cmake_parse_arguments(ARG "" "NAME" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
  zv_of_this_system(sources)
  add_library(${ARG_NAME} SHARED ${sources})
  zv_together(${ARG_NAME})
  if(WIN32)
    set(list ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/exports.def)
    target_link_options(${ARG_NAME} PRIVATE ${list} -Wl,--exclude-all-symbols -Wl,--enable-stdcall-fixup)
    target_link_libraries(${ARG_NAME} PRIVATE oleaut32 ole32)
    set_target_properties(${ARG_NAME} PROPERTIES PREFIX "")
    # In the library itself, not in a floor: it stands before what the compiler adds.
    target_sources(${ARG_NAME} PRIVATE com/windows/ThreadSlot.cpp)
    zv_resources(${ARG_NAME} ${folder})
  else()
    set(list ${CMAKE_CURRENT_SOURCE_DIR}/${folder}/exports.map)
    target_link_options(${ARG_NAME} PRIVATE -Wl,--version-script=${list})
  endif()
  set_target_properties(${ARG_NAME} PROPERTIES LINK_DEPENDS ${list})
  target_link_libraries(${ARG_NAME} PRIVATE zv_warnings)
  zv_precompile(${ARG_NAME} standard)
  foreach(below IN LISTS ARG_DEPENDS)
    if(TARGET zv_${below})
      target_link_libraries(${ARG_NAME} PRIVATE zv_${below})
    endif()
  endforeach()
endfunction()
