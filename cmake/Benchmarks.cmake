# benchmarks: one program of all files in benchmarks/. The terminal cores that it compares with are optional:
# QXTERM_BENCH_LIBVTERM and QXTERM_BENCH_LIBTSM are defined as 1 for those that were found.

file(GLOB_RECURSE sources CONFIGURE_DEPENDS benchmarks/*.cpp)
add_executable(benchmarks ${sources})
target_include_directories(benchmarks PRIVATE benchmarks)
qxterm_link(benchmarks qxterm_headless_session)

find_package(PkgConfig)
if(PkgConfig_FOUND)
    pkg_check_modules(VTERM IMPORTED_TARGET vterm)
    pkg_check_modules(TSM IMPORTED_TARGET libtsm)
endif()
foreach(pair VTERM:LIBVTERM TSM:LIBTSM)
    string(REPLACE ":" ";" pair "${pair}")
    list(GET pair 0 found)
    list(GET pair 1 name)
    if(${found}_FOUND)
        target_link_libraries(benchmarks PRIVATE PkgConfig::${found})
        target_compile_definitions(benchmarks PRIVATE QXTERM_BENCH_${name}=1)
    endif()
endforeach()
