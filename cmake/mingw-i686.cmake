# Builds for 32-bit Windows on Debian: g++-mingw-w64-i686-posix.
set(kine_mingw_processor i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
