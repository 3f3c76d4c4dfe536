# Each bench/*_bench.cpp and each bench/*_main.cpp is a program of its own, a benchmark or a
# helper; the other files there are shared by all benchmarks.
find_package(benchmark REQUIRED)
find_package(FLEX REQUIRED)
file(GLOB bench_programs CONFIGURE_DEPENDS bench/*_bench.cpp)
file(GLOB bench_helpers CONFIGURE_DEPENDS bench/*_main.cpp)
file(GLOB bench_shared CONFIGURE_DEPENDS bench/*.cpp)
list(REMOVE_ITEM bench_shared ${bench_programs} ${bench_helpers} "")

# The floor that all figures are compared with: full tables, and -O2 whatever the build type.
flex_target(floor_scanner bench/floor_scanner.l ${CMAKE_BINARY_DIR}/generated/floor_scanner.cpp
    COMPILE_FLAGS -Cf)
set_source_files_properties(${FLEX_floor_scanner_OUTPUTS} PROPERTIES
    COMPILE_OPTIONS "-O2;-Wno-sign-compare")

add_library(tarnlet_bench STATIC ${bench_shared} ${FLEX_floor_scanner_OUTPUTS})
target_include_directories(tarnlet_bench PUBLIC bench)
# Scanning alone is measured at an entry that is hidden.
target_include_directories(tarnlet_bench PRIVATE include src ${CMAKE_BINARY_DIR}/generated)
target_link_libraries(tarnlet_bench PRIVATE PkgConfig::GLIB tarnlet_flags)
add_dependencies(tarnlet_bench tarnlet_objects)

foreach(program IN LISTS bench_programs bench_helpers)
    cmake_path(GET program STEM name)
    string(REGEX REPLACE "_main$" "" name ${name})
    add_executable(bench_${name} ${program})
    target_link_libraries(bench_${name} PRIVATE tarnlet_bench tarnlet_flags)
    set_target_properties(bench_${name} PROPERTIES
        OUTPUT_NAME ${name}
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
    if(program IN_LIST bench_programs)
        # The objects and not the library, for the hidden entry.
        target_sources(bench_${name} PRIVATE $<TARGET_OBJECTS:tarnlet_objects>)
        target_include_directories(bench_${name} PRIVATE include)
        # Optimised as a whole, as the library is.
        target_link_options(bench_${name} PRIVATE
            $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release,RelWithDebInfo>>:-flto=auto>)
        target_link_libraries(bench_${name} PRIVATE PkgConfig::GLIB benchmark::benchmark)
    endif()
endforeach()
target_link_libraries(bench_empty PRIVATE PkgConfig::GLIB)
if(TARGET tarnlet_tool)
    target_compile_definitions(bench_tool_bench PRIVATE
        BENCH_TOOL="$<TARGET_FILE:tarnlet_tool>" BENCH_EMPTY_PROGRAM="$<TARGET_FILE:bench_empty>")
    add_dependencies(bench_tool_bench tarnlet_tool bench_empty)
else()
    set_target_properties(bench_tool_bench PROPERTIES EXCLUDE_FROM_ALL TRUE)
endif()
