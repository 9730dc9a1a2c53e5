# The Debian packages: the library alone, named for its SONAME, all that a developer needs beside it, and the program.
set(runtime libkinedll${PROJECT_VERSION_MAJOR})
set(development libkinedll-dev)
set(program)
if(TARGET kine)
    set(program kinedll-tools)
endif()
set(debian_release 1)
set(debian_version ${PROJECT_VERSION}-${debian_release})

set(debian_libdir lib)
if(CMAKE_LIBRARY_ARCHITECTURE)
    set(debian_libdir lib/${CMAKE_LIBRARY_ARCHITECTURE})
endif()
kine_install(RUNTIME ${runtime} DEVELOPMENT ${development} DOCUMENTATION ${development} EXTRA
    LIBDIR ${debian_libdir} DOCDIR share/doc/${development} EXPORT KineDllDebian PC_PREFIX /usr)
if(program)
    kine_install_program(COMPONENT ${program} EXTRA)
endif()

# Files that Debian asks for. The changelog names the moment of the build: SOURCE_DATE_EPOCH makes it repeatable.
set(debian_files ${PROJECT_BINARY_DIR}/install/debian)
string(TIMESTAMP debian_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${CMAKE_CURRENT_LIST_DIR}/changelog.in ${debian_files}/changelog.Debian @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/shlibs.in ${debian_files}/shlibs @ONLY)
find_program(KINE_GZIP gzip REQUIRED)
execute_process(COMMAND ${KINE_GZIP} -9nf ${debian_files}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
foreach(package IN ITEMS ${runtime} ${development} ${program})
    install(FILES ${debian_files}/changelog.Debian.gz ${CMAKE_CURRENT_LIST_DIR}/copyright
        DESTINATION share/doc/${package} COMPONENT ${package} EXCLUDE_FROM_ALL)
endforeach()

list(PREPEND CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL ${runtime} ${development} ${program})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${debian_release})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/before_packing.cmake)
set(CPACK_KINE_RUNTIME ${runtime})
set(CPACK_KINE_PROGRAM ${program})
set(CPACK_KINE_NEEDS_RUNTIME "${runtime} (= ${debian_version})")
set(CPACK_KINE_STRIP ${CMAKE_STRIP})

set(what_it_does
"Joints to positions and back for six-axis and four-axis arms in a cell with
tools, work objects, positioners and tracks, and calibration of these. Plain
C interface; no allocation, lock or thread in any call.")

string(TOUPPER ${runtime} package)
set(CPACK_DEBIAN_${package}_PACKAGE_NAME ${runtime})
set(CPACK_DEBIAN_${package}_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_${package}_PACKAGE_CONTROL_EXTRA ${debian_files}/shlibs ${CMAKE_CURRENT_LIST_DIR}/triggers)
set(CPACK_COMPONENT_${package}_DESCRIPTION "${what_it_does}

This package holds the shared library.")

string(TOUPPER ${development} package)
set(CPACK_DEBIAN_${package}_PACKAGE_NAME ${development})
set(CPACK_DEBIAN_${package}_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_${package}_PACKAGE_DEPENDS "${runtime} (= ${debian_version})")
set(CPACK_COMPONENT_${package}_DESCRIPTION "${what_it_does}

This package holds the headers, the files for CMake and pkg-config, the
documentation and the examples.")

if(program)
    string(TOUPPER ${program} package)
    set(CPACK_DEBIAN_${package}_PACKAGE_NAME ${program})
    set(CPACK_DEBIAN_${package}_PACKAGE_SECTION science)
    set(CPACK_COMPONENT_${package}_DESCRIPTION "${what_it_does}

This package holds kine, a program that solves, converts, calibrates, checks
and draws the cells that a file describes.")
endif()
