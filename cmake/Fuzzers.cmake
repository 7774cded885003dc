# Each file directly in fuzz/ is one fuzz target, named after it. With clang (preset fuzz) each becomes one
# libFuzzer program: the modules carry coverage counters (-fsanitize=fuzzer-no-link), and only the fuzzers
# themselves get libFuzzer's main(). With the tests comes fuzz-replay, a plain program of all targets that runs the
# inputs of fuzz/corpus/.

file(GLOB fuzz_targets CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/fuzz/*.cpp")
set(support "${CMAKE_SOURCE_DIR}/fuzz/support")
# What the targets share. A part of the fuzzers carries counters like the modules, and is compiled once.
add_library(fuzz_support OBJECT ${support}/target.cpp ${support}/program.cpp ${support}/snapshot.cpp ${support}/whole_program.cpp)
target_include_directories(fuzz_support PUBLIC fuzz tests tools)
target_link_libraries(fuzz_support PRIVATE qxterm_options qxterm_json zpt_ssh_parts zpt_tnetd_parts)
set_property(TARGET fuzz_support PROPERTY QXTERM_NEEDS qxterm_scenario_parts qxterm_model)

function(qxterm_fuzz_program name)
    add_executable(${name} ${ARGN})
    qxterm_link(${name} fuzz_support)
    target_link_libraries(${name} PRIVATE zpt_ssh_parts zpt_tnetd_parts)
endfunction()

file(GLOB steps_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/fuzz/random-steps/*.cpp")
if(NOT CMAKE_CROSSCOMPILING)
    qxterm_fuzz_program(random-steps ${steps_sources})
endif()

if(QXTERM_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "The fuzzers need clang: use the preset fuzz")
    endif()
    add_custom_target(fuzzers)
    add_dependencies(fuzzers random-steps)
    foreach(source IN LISTS fuzz_targets)
        get_filename_component(name "${source}" NAME_WE)
        qxterm_fuzz_program(${name} "${source}" ${support}/fuzzer_entry.cpp)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
        add_dependencies(fuzzers ${name})
    endforeach()
endif()

if(QXTERM_TESTS AND NOT CMAKE_CROSSCOMPILING)
    qxterm_fuzz_program(fuzz-replay ${fuzz_targets} ${support}/replay.cpp)
endif()
