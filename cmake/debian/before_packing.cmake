# Run by cpack when the files of the Debian packages lie in place, before they are packed: strips the library as
# Debian does and finds out which packages it needs. CPACK_DEBIAN_PACKAGE_SHLIBDEPS would find out the same, but add
# scripts to the package that call ldconfig, which its trigger does without them.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

set(folder ${CPACK_TEMPORARY_DIRECTORY}/${CPACK_KINE_RUNTIME})
file(GLOB_RECURSE libraries ${folder}/*.so.*.*.*)
execute_process(
    COMMAND ${CPACK_KINE_STRIP} --strip-unneeded --remove-section=.comment --remove-section=.note ${libraries}
    COMMAND_ERROR_IS_FATAL ANY)

# dpkg-shlibdeps wants to be where a source package is.
file(WRITE ${CPACK_TEMPORARY_DIRECTORY}/debian/control "")
execute_process(COMMAND dpkg-shlibdeps -O ${libraries} WORKING_DIRECTORY ${CPACK_TEMPORARY_DIRECTORY}
    OUTPUT_VARIABLE needs OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
file(REMOVE_RECURSE ${CPACK_TEMPORARY_DIRECTORY}/debian)
if(NOT needs MATCHES "^shlibs:Depends=(.+)$")
    message(FATAL_ERROR "dpkg-shlibdeps finds no dependency: ${needs}")
endif()
string(TOUPPER ${CPACK_KINE_RUNTIME} package)
set(CPACK_DEBIAN_${package}_PACKAGE_DEPENDS ${CMAKE_MATCH_1})
