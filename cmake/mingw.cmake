# Cross compilers for Windows, as Debian packs them; windows64.cmake and windows32.cmake choose the processor. What is
# made asks for nothing but the system: the compiler's own libraries are linked into each program.
set(CMAKE_SYSTEM_NAME Windows)
set(ZV_MINGW ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${ZV_MINGW}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZV_MINGW}-g++-posix)
set(CMAKE_RC_COMPILER ${ZV_MINGW}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${ZV_MINGW})
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Without the time of linking, so that the same sources make the same bytes.
foreach(kind EXE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
endforeach()
