# What `cmake --install` puts down: the programs, the libraries for hosts, and what their authors need.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

foreach(program zvconf zvhost)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME)
  endif()
endforeach()
if(NOT TARGET ZVConfiguracion)
  return()
endif()
install(TARGETS ZVConfiguracion ZVDatos LIBRARY)
install(DIRECTORY include/zvconfiguracion DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN *.h)
install(FILES idl/ZVConfiguracion.idl DESTINATION ${CMAKE_INSTALL_DATADIR}/zvconfiguracion)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/ZVConfiguracion)
set(made ${PROJECT_BINARY_DIR}/generated/package)
configure_package_config_file(cmake/ZVConfiguracionConfig.cmake.in ${made}/ZVConfiguracionConfig.cmake
                              INSTALL_DESTINATION ${package}
                              PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${made}/ZVConfiguracionConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${made}/ZVConfiguracionConfig.cmake ${made}/ZVConfiguracionConfigVersion.cmake DESTINATION ${package})
configure_file(cmake/zvconfiguracion.pc.in ${made}/zvconfiguracion.pc @ONLY)
install(FILES ${made}/zvconfiguracion.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
