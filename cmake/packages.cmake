# The packages that cpack makes: .deb for Debian, .tar.gz and .zip that run from wherever they are unpacked. ./package
# makes them all.
if(NOT PROJECT_IS_TOP_LEVEL OR NOT KINE_INSTALL)
    return()
endif()

set(CPACK_PACKAGE_VENDOR "KineDll developers")
set(CPACK_PACKAGE_CONTACT "KineDll developers <kinedll@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "kinematics of industrial robot arms")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR ZIP)
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_PACKAGE_FILE_NAME KineDll-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
# Whatever the umask of who makes the packages.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(CPACK_GENERATOR TGZ ZIP)
    find_program(KINE_DPKG_SHLIBDEPS dpkg-shlibdeps)
    if(KINE_DPKG_SHLIBDEPS)
        include(cmake/debian/packages.cmake)
    endif()
endif()
include(CPack)
