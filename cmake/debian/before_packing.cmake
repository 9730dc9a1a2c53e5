# Run by cpack when the files of the Debian packages lie in place, before they are packed: strips library and program as
# Debian does and finds out which packages they need. CPACK_DEBIAN_PACKAGE_SHLIBDEPS would find out the same, but add
# scripts to the package that call ldconfig, which its trigger does without them.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

# kine_needs(VARIABLE FILE [OPTION...]): strips a file and says which packages it needs.
function(kine_needs variable file)
    execute_process(
        COMMAND ${CPACK_KINE_STRIP} --strip-unneeded --remove-section=.comment --remove-section=.note ${file}
        COMMAND_ERROR_IS_FATAL ANY)
    # dpkg-shlibdeps wants to be where a source package is.
    file(WRITE ${CPACK_TEMPORARY_DIRECTORY}/debian/control "")
    execute_process(COMMAND dpkg-shlibdeps ${ARGN} -O ${file} WORKING_DIRECTORY ${CPACK_TEMPORARY_DIRECTORY}
        OUTPUT_VARIABLE needs OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE ${CPACK_TEMPORARY_DIRECTORY}/debian)
    if(NOT needs MATCHES "^shlibs:Depends=(.+)$")
        message(FATAL_ERROR "dpkg-shlibdeps finds no dependency: ${needs}")
    endif()
    set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE library ${CPACK_TEMPORARY_DIRECTORY}/${CPACK_KINE_RUNTIME}/*.so.*.*.*)
string(TOUPPER ${CPACK_KINE_RUNTIME} package)
kine_needs(CPACK_DEBIAN_${package}_PACKAGE_DEPENDS ${library})

if(CPACK_KINE_PROGRAM)
    file(GLOB_RECURSE program ${CPACK_TEMPORARY_DIRECTORY}/${CPACK_KINE_PROGRAM}/*/bin/kine)
    # There the loader finds the library by itself.
    file(RPATH_REMOVE FILE ${program})
    cmake_path(GET library PARENT_PATH library_folder)
    kine_needs(needs ${program} -l${library_folder} --ignore-missing-info)
    string(TOUPPER ${CPACK_KINE_PROGRAM} package)
    set(CPACK_DEBIAN_${package}_PACKAGE_DEPENDS "${CPACK_KINE_NEEDS_RUNTIME}, ${needs}")

    # Man pages of Debian packages are compressed.
    file(GLOB_RECURSE page ${CPACK_TEMPORARY_DIRECTORY}/${CPACK_KINE_PROGRAM}/*/kine.1)
    execute_process(COMMAND gzip -9nf ${page} COMMAND_ERROR_IS_FATAL ANY)
endif()
