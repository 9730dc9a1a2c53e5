# Builds the examples in this folder against an installed KineDll.
cmake_minimum_required(VERSION 3.16)
project(KineDllExamples LANGUAGES C CXX)
find_package(KineDll 1.0 REQUIRED)
set(CMAKE_C_STANDARD 99)
set(CMAKE_CXX_STANDARD 20)

file(GLOB programs ${CMAKE_CURRENT_SOURCE_DIR}/*.c ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
foreach(program IN LISTS programs)
    get_filename_component(name ${program} NAME_WE)
    add_executable(${name} ${program})
    target_link_libraries(${name} PRIVATE KineDll::KineDll)
endforeach()
