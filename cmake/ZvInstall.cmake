# What `cmake --install` puts down, by packages: the programs, the libraries for hosts, and what their authors need.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(made ${PROJECT_BINARY_DIR}/generated/package)
# Hosts load the libraries and nobody links them: they stand apart from those of the system.
set(ZV_INSTALL_MODULEDIR ${CMAKE_INSTALL_LIBDIR}/zvconfiguracion)

# As Debian wants it: as small as can be, and the same bytes each time.
function(zv_gzip file)
  execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(program zvconf zvhost)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME COMPONENT ${program})
    configure_file(packaging/${program}.1.in ${made}/${program}.1 @ONLY)
    zv_gzip(${made}/${program}.1)
    configure_file(packaging/completion.bash.in ${made}/completion/${program} @ONLY)
    install(FILES ${made}/${program}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${program})
    install(FILES ${made}/completion/${program} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            COMPONENT ${program})
  endif()
endforeach()
if(TARGET zvhost)
  foreach(each desktop:applications svg:icons/hicolor/scalable/apps metainfo.xml:metainfo)
    string(REPLACE ":" ";" each ${each})
    list(POP_FRONT each ending folder)
    install(FILES packaging/zvhost.${ending} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder} COMPONENT zvhost)
  endforeach()
endif()
if(NOT TARGET ZVConfiguracion)
  return()
endif()
install(TARGETS ZVConfiguracion ZVDatos LIBRARY DESTINATION ${ZV_INSTALL_MODULEDIR} COMPONENT zvconfiguracion)

set(dev COMPONENT zvconfiguracion-dev)
install(DIRECTORY include/zvconfiguracion DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${dev} FILES_MATCHING
        PATTERN *.h PATTERN *.hpp)
install(FILES idl/ZVConfiguracion.idl idl/ZVDatos.idl DESTINATION ${CMAKE_INSTALL_DATADIR}/zvconfiguracion ${dev})
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/ZVConfiguracion)
configure_package_config_file(cmake/ZVConfiguracionConfig.cmake.in ${made}/ZVConfiguracionConfig.cmake
                              INSTALL_DESTINATION ${package}
                              PATH_VARS CMAKE_INSTALL_INCLUDEDIR ZV_INSTALL_MODULEDIR)
write_basic_package_version_file(${made}/ZVConfiguracionConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${made}/ZVConfiguracionConfig.cmake ${made}/ZVConfiguracionConfigVersion.cmake DESTINATION ${package}
        ${dev})
file(RELATIVE_PATH up ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/zvconfiguracion.pc.in ${made}/zvconfiguracion.pc @ONLY)
install(FILES ${made}/zvconfiguracion.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${dev})

if(TARGET zvhost)
  include(cmake/ZvPackages.cmake)
endif()
