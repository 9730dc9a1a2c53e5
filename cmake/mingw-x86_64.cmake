# Builds for 64-bit Windows on Debian: g++-mingw-w64-x86-64-posix.
set(kine_mingw_processor x86_64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
