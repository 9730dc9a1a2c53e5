# Linker inputs from the one list of exports: a version script for ELF, a module definition for Windows.
set(kine_exports_list ${PROJECT_SOURCE_DIR}/interface/exports.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${kine_exports_list})
file(STRINGS ${kine_exports_list} kine_exports)

set(kine_version_script ${PROJECT_BINARY_DIR}/KineDll.map)
list(JOIN kine_exports ";\n        " names)
file(CONFIGURE OUTPUT ${kine_version_script} CONTENT [[{
    global:
        @names@;
    local: *;
};
]] @ONLY NEWLINE_STYLE UNIX)

set(kine_module_definition ${PROJECT_BINARY_DIR}/KineDll.def)
list(JOIN kine_exports "\n    " names)
file(CONFIGURE OUTPUT ${kine_module_definition} CONTENT [[LIBRARY KineDll
EXPORTS
    @names@
]] @ONLY NEWLINE_STYLE WIN32)
