# Where the files go when the project is installed.
#
# Components: Runtime is the library, Development what a compiler and CMake need, Documentation the texts and examples,
# Program is kine with its man page, completions and cells.
# The Debian packages have components of their own, named like the packages, because Debian wants other folders; a
# plain `cmake --install` leaves these out.
option(KINE_INSTALL "Install the library with this project" ${PROJECT_IS_TOP_LEVEL})
if(NOT KINE_INSTALL)
    return()
endif()

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# kine_install(RUNTIME c DEVELOPMENT c DOCUMENTATION c LIBDIR dir DOCDIR dir EXPORT name [PC_PREFIX dir] [EXTRA])
# Everything in three components. With PC_PREFIX, pkg-config is told this prefix; without, it is found from the place
# of kinedll.pc, so that the installed folder can be moved. EXTRA leaves the components out of a plain install.
function(kine_install)
    cmake_parse_arguments(PARSE_ARGV 0 to "EXTRA" "RUNTIME;DEVELOPMENT;DOCUMENTATION;LIBDIR;DOCDIR;EXPORT;PC_PREFIX" "")
    set(extra)
    if(to_EXTRA)
        set(extra EXCLUDE_FROM_ALL)
    endif()
    set(cmake_dir ${to_LIBDIR}/cmake/KineDll)
    set(made ${PROJECT_BINARY_DIR}/install/${to_EXPORT})

    install(TARGETS KineDll EXPORT ${to_EXPORT}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${to_RUNTIME} ${extra}
        LIBRARY DESTINATION ${to_LIBDIR} COMPONENT ${to_RUNTIME} NAMELINK_COMPONENT ${to_DEVELOPMENT} ${extra}
        ARCHIVE DESTINATION ${to_LIBDIR} COMPONENT ${to_DEVELOPMENT} ${extra}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
    install(EXPORT ${to_EXPORT} FILE KineDllTargets.cmake NAMESPACE KineDll:: DESTINATION ${cmake_dir}
        COMPONENT ${to_DEVELOPMENT} ${extra})

    configure_package_config_file(cmake/KineDllConfig.cmake.in ${made}/KineDllConfig.cmake
        INSTALL_DESTINATION ${cmake_dir} NO_SET_AND_CHECK_MACRO)
    write_basic_package_version_file(${made}/KineDllConfigVersion.cmake COMPATIBILITY SameMajorVersion)

    set(pc_dir ${to_LIBDIR}/pkgconfig)
    set(pc_prefix ${CMAKE_INSTALL_PREFIX})
    if(to_PC_PREFIX)
        set(pc_prefix ${to_PC_PREFIX})
    elseif(NOT IS_ABSOLUTE ${to_LIBDIR})
        file(RELATIVE_PATH up /${pc_dir} /)
        string(REGEX REPLACE "/$" "" pc_prefix "\${pcfiledir}/${up}")
    endif()
    cmake_path(APPEND pc_libdir "\${prefix}" ${to_LIBDIR})
    cmake_path(APPEND pc_includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
    configure_file(cmake/kinedll.pc.in ${made}/kinedll.pc @ONLY)

    install(FILES include/KineDll.h include/KineDll.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        COMPONENT ${to_DEVELOPMENT} ${extra})
    install(FILES ${made}/KineDllConfig.cmake ${made}/KineDllConfigVersion.cmake DESTINATION ${cmake_dir}
        COMPONENT ${to_DEVELOPMENT} ${extra})
    install(FILES ${made}/kinedll.pc DESTINATION ${pc_dir} COMPONENT ${to_DEVELOPMENT} ${extra})
    if(WIN32)
        # Other linkers than the one that made the import library make their own from it.
        install(FILES ${kine_module_definition} DESTINATION ${to_LIBDIR} COMPONENT ${to_DEVELOPMENT} ${extra})
    endif()

    install(FILES README.md CHANGELOG.md DESTINATION ${to_DOCDIR} COMPONENT ${to_DOCUMENTATION} ${extra})
    file(GLOB_RECURSE pages RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS docs/*.md docs/*.svg docs/*.png)
    foreach(page IN LISTS pages)
        cmake_path(GET page PARENT_PATH folder)
        install(FILES ${page} DESTINATION ${to_DOCDIR}/${folder} COMPONENT ${to_DOCUMENTATION} ${extra})
    endforeach()
    # The Python package itself comes as a wheel.
    install(DIRECTORY examples bindings DESTINATION ${to_DOCDIR} COMPONENT ${to_DOCUMENTATION} ${extra}
        FILES_MATCHING REGEX "/examples/[a-z]+/[^/]+$" REGEX "/bindings/[a-z]+/(README.md|KineDll.cs)$"
        PATTERN __pycache__ EXCLUDE PATTERN kinedll EXCLUDE PATTERN tests EXCLUDE)
    install(FILES cmake/installed_examples.cmake RENAME CMakeLists.txt DESTINATION ${to_DOCDIR}/examples
        COMPONENT ${to_DOCUMENTATION} ${extra})
endfunction()

kine_install(RUNTIME Runtime DEVELOPMENT Development DOCUMENTATION Documentation
    LIBDIR ${CMAKE_INSTALL_LIBDIR} DOCDIR ${CMAKE_INSTALL_DOCDIR} EXPORT KineDll)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT Runtime)

# kine_install_program(COMPONENT c [EXTRA])
function(kine_install_program)
    cmake_parse_arguments(PARSE_ARGV 0 to "EXTRA" "COMPONENT" "")
    set(into COMPONENT ${to_COMPONENT})
    if(to_EXTRA)
        list(APPEND into EXCLUDE_FROM_ALL)
    endif()
    set(made ${PROJECT_BINARY_DIR}/kine-share)
    install(TARGETS kine RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ${into})
    install(FILES ${made}/kine.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 ${into})
    install(FILES ${made}/kine.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME kine ${into})
    install(FILES ${made}/_kine DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions ${into})
    install(FILES ${made}/kine.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d ${into})
    install(DIRECTORY tools/kine/cells DESTINATION ${CMAKE_INSTALL_DATADIR}/kinedll ${into}
        FILES_MATCHING REGEX "/[a-z0-9_]+\\.(json|csv)$")
    install(FILES tools/kine/cell/cell.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/kinedll/cell ${into})
endfunction()

if(TARGET kine)
    # Found beside the program wherever the folder is moved.
    set_target_properties(kine PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    kine_install_program(COMPONENT Program)
endif()
