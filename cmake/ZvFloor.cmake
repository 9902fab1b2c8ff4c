# zv_of_this_system(<variable>)
#
# Takes out of a list of sources those that are another system's: what differs between systems stands in two sources of
# one header, <Name>Posix.cpp and <Name>Windows.cpp.
function(zv_of_this_system variable)
  if(WIN32)
    list(FILTER ${variable} EXCLUDE REGEX "Posix\\.cpp$")
  else()
    list(FILTER ${variable} EXCLUDE REGEX "Windows\\.cpp$")
  endif()
  set(${variable} ${${variable}} PARENT_SCOPE)
endfunction()

# zv_floor(<folder> [APART] [ONE_BY_ONE] [DEPENDS <floor>...] [LINKS <library>...] [EXCEPT <subfolder>...])
#
# A floor of the house: every source below its folder in one static library, zv_<folder> (a slash becomes an
# underscore) with the alias ZV::<folder>, that sees only the floors it is given. A new file needs no edit here.
# A floor that was not asked for is left out from those above. One that stands apart is only for the programs that
# name it, and so are the libraries that its headers need. One whose sources are always compiled one by one can be linked
# in part.
function(zv_floor folder)
  cmake_parse_arguments(ARG "APART;ONE_BY_ONE" "" "DEPENDS;LINKS;EXCEPT" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${folder}/*.cpp ${folder}/*.h)
  foreach(subfolder IN LISTS ARG_EXCEPT)
    list(FILTER sources EXCLUDE REGEX "^${folder}/${subfolder}/")
  endforeach()
  zv_of_this_system(sources)
  string(REPLACE "/" "_" name ${folder})
  set(target zv_${name})
  add_library(${target} STATIC ${sources})
  if(ARG_APART)
    target_link_libraries(${target} PUBLIC ${ARG_LINKS} PRIVATE zv_warnings)
  else()
    target_link_libraries(${target} PRIVATE ${ARG_LINKS} zv_warnings)
  endif()
  if(ARG_LINKS MATCHES "Qt6::")
    zv_precompile(${target} widgets)
  else()
    zv_precompile(${target} standard)
  endif()
  if(NOT ARG_ONE_BY_ONE)
    zv_together(${target})
  endif()
  add_library(ZV::${name} ALIAS ${target})
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  foreach(below IN LISTS ARG_DEPENDS)
    if(TARGET zv_${below})
      target_link_libraries(${target} PUBLIC zv_${below})
    endif()
  endforeach()
  if(NOT ARG_APART)
    target_link_libraries(zv_all INTERFACE ${target})
  endif()
endfunction()

# zv_dialogs(<floor> <folder>...)
#
# Gives the floor a header, zv/Dialogs.h, that names every dialog of the folders: the class of each frm*.h. A
# new dialog needs no edit of the floor.
function(zv_dialogs floor)
  set(includes)
  set(classes)
  set(names)
  foreach(folder IN LISTS ARGN)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${folder}/frm*.h)
    foreach(header IN LISTS headers)
      get_filename_component(class ${header} NAME_WE)
      string(APPEND includes "#include \"${header}\"\n")
      list(APPEND classes ${class})
      list(APPEND names "u\"${class}\"")
    endforeach()
  endforeach()
  list(JOIN classes ", " classes)
  list(JOIN names ", " names)
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/zv/Dialogs.h @ONLY CONTENT [[
#pragma once

@includes@
namespace zv {

template <class... Dialog>
struct DialogList {};

/// Every dialog of the module, and their names in the same order.
using AllDialogs = DialogList<@classes@>;
inline constexpr const char16_t* dialogNames[] = {@names@};

} // namespace zv
]])
  target_include_directories(zv_${floor} PRIVATE ${PROJECT_BINARY_DIR}/generated)
endfunction()
