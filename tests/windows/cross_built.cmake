# Tests of a library for Windows that is built on another system: GoogleTest comes from the sources that Debian ships
# with it, each test program runs as one process under wine, and what is about the build machine is left to its own
# builds. Included by tests/CMakeLists.txt.

# Left out:
# - reference, speed: Python loads the library, valgrind counts its instructions; both are of the build machine.
# - quiet: it watches system calls and the stack by means of Linux.
# - mutation, coverage, interface, docs, figures: scripts, sources and pages, the same whatever they are compiled for.
# - install: what is installed is built with the compilers of the build machine.
# Of tests/abi the header under every compiler and the inside of the ELF library, of tests/threads the frozen pages of
# the ELF library are left out where they stand.
set(kine_parts_of_the_build_machine reference speed quiet mutation coverage interface docs figures install)

set(KINE_GOOGLETEST /usr/src/googletest CACHE PATH "Sources of GoogleTest")
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK OFF)
set(gtest_force_shared_crt ON)
set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
add_subdirectory(${KINE_GOOGLETEST} googletest EXCLUDE_FROM_ALL SYSTEM)
set_target_properties(gtest gtest_main PROPERTIES COMPILE_WARNING_AS_ERROR OFF RUNTIME_OUTPUT_DIRECTORY "")

# One process of wine runs all tests of a program, once it is known that wine runs programs of these bits. What counts
# is what it says at its end: wine may turn a crash into success.
function(kine_discover_tests name)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED wine
        PASS_REGULAR_EXPRESSION "\\[  PASSED  \\] [0-9]+ test" FAIL_REGULAR_EXPRESSION "\\[  FAILED  \\]")
    if(ARGN)
        set_tests_properties(${name} ${ARGN})
    endif()
endfunction()
