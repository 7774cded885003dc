# One libFuzzer program for each file in fuzz/, named after it. The modules carry coverage counters
# (-fsanitize=fuzzer-no-link), and only the fuzzers themselves get libFuzzer's main().

if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "The fuzzers need clang: use the preset fuzz")
endif()

file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/fuzz/*.cpp")
add_custom_target(fuzzers)
foreach(source IN LISTS sources)
    get_filename_component(name "${source}" NAME_WE)
    add_executable(${name} "${source}")
    target_link_libraries(${name} PRIVATE qxterm_options qxterm_core qxterm_headless)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    add_dependencies(fuzzers ${name})
endforeach()
