# `cpack` makes Debian packages of the components of ZvInstall.cmake, of the same objects that the tests have tried.
# Besides, each has the papers that Debian asks for. Those stand in no plain `cmake --install`.
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL zvconfiguracion zvconf zvhost zvconfiguracion-dev)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_VENDOR ZVConfiguracion)
set(CPACK_PACKAGE_CONTACT "The ZVConfiguracion authors <zvconfiguracion@example.org>")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION education)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The licence stands in LICENSE and nowhere else.
file(READ LICENSE ZV_LICENCE)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]+)\n\n(.*)" matched "${ZV_LICENCE}")
set(ZV_HOLDER ${CMAKE_MATCH_1})
string(STRIP "${CMAKE_MATCH_2}" ZV_LICENCE)
string(REPLACE "\n\n" "\n.\n" ZV_LICENCE "${ZV_LICENCE}")
string(REPLACE "\n" "\n " ZV_LICENCE " ${ZV_LICENCE}")
configure_file(packaging/copyright.in ${made}/copyright @ONLY)

# The day of a version is that of the changelog's last line.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
execute_process(COMMAND git log -1 --date=rfc --format=%cd -- CHANGELOG.md
                WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE ZV_DAY
                OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT ZV_DAY)
  file(TIMESTAMP CHANGELOG.md ZV_DAY "%a, %d %b %Y %H:%M:%S +0000" UTC)
endif()
configure_file(packaging/changelog.in ${made}/changelog.Debian @ONLY)
configure_file(CHANGELOG.md ${made}/changelog COPYONLY)
zv_gzip(${made}/changelog.Debian)
zv_gzip(${made}/changelog)

# zv_package(<name> SAYS <text> [DOCS <file>...] [SECTION <section>] [DEPENDS|RECOMMENDS|SUGGESTS <packages>])
#
# The text's first line is the package's title; the others tell it.
macro(zv_package name)
  cmake_parse_arguments(ARG "" "SAYS;SECTION;DEPENDS;RECOMMENDS;SUGGESTS" "DOCS" ${ARGN})
  string(TOUPPER ${name} key)
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name})
  set(CPACK_COMPONENT_${key}_DESCRIPTION "${ARG_SAYS}")
  foreach(field SECTION DEPENDS RECOMMENDS SUGGESTS)
    if(ARG_${field})
      set(CPACK_DEBIAN_${key}_PACKAGE_${field} "${ARG_${field}}")
    endif()
  endforeach()
  set(papers ${made}/copyright ${made}/changelog.Debian.gz ${made}/changelog.gz ${ARG_DOCS})
  install(FILES ${papers} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${name} EXCLUDE_FROM_ALL)
endmacro()

set(exactly "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
zv_package(zvconfiguracion SECTION libs RECOMMENDS qt6-translations-l10n SUGGESTS zvconfiguracion-dev
           SAYS "módulo de configuración de un centro de enseñanza
Las ventanas con que la secretaría de un centro lleva las listas de las que
se elige en el resto de los programas, como biblioteca que un anfitrión carga
en marcha. Trae también una conexión para el anfitrión que no tiene otra.")
zv_package(zvconf DOCS docs/guiones.md examples/recorrido.guion SUGGESTS "bash-completion, odbc-postgresql, zvhost"
           SAYS "configuración de un centro de enseñanza, sin pantalla
Crea y comprueba las bases de datos de un centro, dice qué filas están en
uso, lleva la clave con que se cifran las enfermedades y representa guiones,
que hacen en las ventanas lo que haría una persona y dicen qué ha de verse.")
zv_package(zvhost RECOMMENDS "hicolor-icon-theme, libqt6svg6, qt6-translations-l10n" SUGGESTS "odbc-postgresql, zvconf"
           SAYS "configuración de un centro de enseñanza, en su escritorio
Un árbol con las listas que lleva la secretaría (países, idiomas, clases de
contrato, bancos y las demás), las ventanas que cambian sus filas, el borrado,
que dice quién usa una fila, y la papelera.")
zv_package(zvconfiguracion-dev SECTION libdevel DOCS docs/anfitriones.md docs/hosts.md docs/instrucciones.md
           DEPENDS "zvconfiguracion (= ${exactly})"
           RECOMMENDS "zvconf (= ${exactly})"
           SAYS "módulo de configuración de un centro, para quien escribe un anfitrión
Las cabeceras para C y C++, la definición de interfaces, los ficheros de
CMake y de pkg-config y anfitriones de ejemplo en C, C++, Python y VBScript.")
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zvconfiguracion-dev/examples
        COMPONENT zvconfiguracion-dev EXCLUDE_FROM_ALL)
install(DIRECTORY docs/manual DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zvhost COMPONENT zvhost EXCLUDE_FROM_ALL)

include(CPack)
