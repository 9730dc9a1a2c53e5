# Compiler and linker options, in one place. CMAKE_COMPILE_WARNING_AS_ERROR is set by the presets.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release)
endif()

set(KINE_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=; empty for none")
option(KINE_COVERAGE "Count which lines and branches of the library run; GCC only" OFF)

# Plain IEEE doubles, the same bits from every compiler and at every optimisation level: no contraction, and
# sines and cosines left as the calls they are written as (a compiler that pairs them up calls another
# function of the C library, which may round otherwise).
set(kine_float_options -ffp-contract=off -fno-builtin-sin -fno-builtin-cos -fno-builtin-sincos)

# On 32-bit x86 doubles are plain in the SSE registers only, and callers keep the stack aligned to 4 bytes where SSE
# wants 16: everything is compiled so, the tests too.
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i[3-6]86|x86)$")
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-msse2> $<$<COMPILE_LANGUAGE:C,CXX>:-mfpmath=sse>
        $<$<COMPILE_LANGUAGE:C,CXX>:-mstackrealign>)
endif()

# Left alone, GCC clears and copies the library's records with the processor's string instructions, which are slow to
# start, or calls the C library for it. Plain stores made a forward call a sixth shorter.
include(CheckCXXCompilerFlag)
set(kine_plain_stores vector_loop:512:noalign,libcall:-1:noalign)
set(kine_record_options -mmemset-strategy=${kine_plain_stores} -mmemcpy-strategy=${kine_plain_stores})
check_cxx_compiler_flag("${kine_record_options}" KINE_HAS_RECORD_OPTIONS)
if(NOT KINE_HAS_RECORD_OPTIONS)
    set(kine_record_options)
endif()

set(kine_warnings
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wcast-qual -Wformat=2 -Wundef
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wdouble-promotion -Wnull-dereference)

function(kine_warning_options target)
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${kine_warnings}>)
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:C>:-Wall -Wextra -Wpedantic -Wconversion -Wshadow>)
    if(KINE_SANITIZE)
        # The library has no type information for the vptr check.
        target_compile_options(${target} PRIVATE -fsanitize=${KINE_SANITIZE} -fno-sanitize-recover=all
            -fno-sanitize=vptr -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${KINE_SANITIZE})
    endif()
endfunction()

# What goes into the library: nothing is visible unless the header says so.
function(kine_library_options target)
    kine_warning_options(${target})
    target_compile_options(${target} PRIVATE ${kine_float_options} ${kine_record_options} -fno-exceptions
        -fno-rtti)
    if(KINE_COVERAGE)
        # Counted is what the library is made of: its own objects, and in them its own sources. An inline function
        # that nothing calls is kept, so that it shows as not reached instead of not at all. Tests link these objects
        # before their own: of an inline function in both, the linker takes the copy that is counted. Threads count
        # side by side.
        target_compile_options(${target} PRIVATE --coverage -fprofile-filter-files=/src/ -fprofile-update=atomic
            -fkeep-inline-functions)
        target_link_options(${target} PUBLIC --coverage)
    endif()
    set_target_properties(${target} PROPERTIES
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# The library needs the C library at run time and nothing else, and shows its own functions and nothing else:
# templates of the C++ library would be visible otherwise. Sanitizers bring run-time libraries of their own, which
# the linker must not insist on. The loader looks every function up when it loads the library, so that no first call
# waits for it, and what it fills in is read-only from then on.
function(kine_link_options target)
    target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc)
    if(NOT WIN32)
        target_link_options(${target} PRIVATE -Wl,--version-script=${kine_version_script}
            -Wl,-z,relro,-z,now,-z,noexecstack)
        set_target_properties(${target} PROPERTIES LINK_DEPENDS ${kine_version_script})
    endif()
    if(KINE_COVERAGE)
        target_link_options(${target} PRIVATE --coverage)
    endif()
    if(KINE_SANITIZE)
        target_link_options(${target} PRIVATE -fsanitize=${KINE_SANITIZE})
    elseif(NOT WIN32)
        target_link_options(${target} PRIVATE -Wl,--no-undefined)
    endif()
endfunction()
