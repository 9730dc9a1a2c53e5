# What makes KineDll.dll of the target KineDll: the module definition, which names the exports without decoration on
# 32-bit Windows as well, the version that Windows shows, and the linker's options.
set_target_properties(KineDll PROPERTIES PREFIX "")
target_sources(KineDll PRIVATE ${kine_module_definition})

if(MINGW)
    # The DLL may be loaded anywhere, its data are not run, and the same sources make the same file.
    target_link_options(KineDll PRIVATE -static -s -Wl,--dynamicbase,--nxcompat,--no-insert-timestamp
        -Wl,--major-image-version=${PROJECT_VERSION_MAJOR},--minor-image-version=${PROJECT_VERSION_MINOR})
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        target_link_options(KineDll PRIVATE -Wl,--high-entropy-va)
    endif()
endif()

enable_language(RC)
configure_file(cmake/KineDll.rc.in KineDll.rc @ONLY)
target_sources(KineDll PRIVATE ${PROJECT_BINARY_DIR}/KineDll.rc)

# The programs of this project find the DLL beside them.
if(PROJECT_IS_TOP_LEVEL)
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
    set_target_properties(KineDll PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
endif()
