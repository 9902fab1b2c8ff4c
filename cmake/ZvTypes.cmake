# zv_resources(<library> <folder>)
#
# What a library for Windows carries beside its code: the types of idl/<library>.idl, and what the folder's
# recursos.rc.in names. A manifest is laid beside it, for hosts that take it from there without a registry.
function(zv_resources library folder)
  set(made ${PROJECT_BINARY_DIR}/generated/${library})
  set(ZV_TYPES ${made}.tlb)
  configure_file(${folder}/recursos.rc.in ${made}.rc @ONLY)

  # The definition is for all compilers of such; this one has to be told where its words come from, and writes texts as
  # they stand where Windows has them in its own code page.
  set(definition ${PROJECT_SOURCE_DIR}/idl/${library}.idl)
  find_program(ZV_WIDL ${ZV_MINGW}-widl x86_64-w64-mingw32-widl REQUIRED)
  find_path(ZV_WIDL_HEADERS oaidl.idl PATHS /usr/include/wine/wine/windows REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  find_path(ZV_WIDL_TYPES stdole2.tlb PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows REQUIRED
            NO_CMAKE_FIND_ROOT_PATH)
  set(width -m64)
  set(ZV_ARCHITECTURE amd64)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(width -m32)
    set(ZV_ARCHITECTURE x86)
  endif()
  # It notes the time, in words and as a number, and the same source would never make the same library again.
  set(untimed "s/( at ).{24}(\\nW*\\x13\\0).{4}/$1Thu Jan  1 00:00:00 1970$2\\0\\0\\0\\0/s or die")
  add_custom_command(OUTPUT ${ZV_TYPES} DEPENDS ${definition}
                     COMMAND sh -c "(echo 'import \"oaidl.idl\"$<SEMICOLON>' && iconv -f UTF-8 -t CP1252 ${definition}) >${made}.idl"
                     COMMAND ${ZV_WIDL} ${width} -I${ZV_WIDL_HEADERS} -L${ZV_WIDL_TYPES} -t -o ${ZV_TYPES} ${made}.idl
                     COMMAND perl -0777 -pi -e "${untimed}" ${ZV_TYPES}
                     VERBATIM)
  target_sources(${library} PRIVATE ${made}.rc ${ZV_TYPES})
  set_source_files_properties(${made}.rc PROPERTIES OBJECT_DEPENDS ${ZV_TYPES} SKIP_PRECOMPILE_HEADERS ON)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/${library}.manifest.in
                 ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${library}.Clases.manifest @ONLY)
endfunction()
