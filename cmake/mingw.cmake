# The common part of the two toolchains that build for Windows on Debian (mingw-x86_64.cmake, mingw-i686.cmake), which
# set kine_mingw_processor first.
#
# Debian has each compiler for two thread models under one name; here they are called by their full names, so that the
# choice does not hang on the system's alternatives. It is "posix": tests run threads, and the C++ library has
# std::thread in no other. The library itself has no threads and takes nothing from that model, which a test of its
# imports holds.
#
# Programs run under wine where it is installed.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${kine_mingw_processor})

set(kine_mingw ${kine_mingw_processor}-w64-mingw32)
set(CMAKE_C_COMPILER ${kine_mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${kine_mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${kine_mingw}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${kine_mingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# No program needs a library of the compiler beside it.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

find_program(KINE_WINE wine)
if(KINE_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tests/windows/run_under_wine.sh)
endif()
