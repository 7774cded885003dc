# unit-tests: the files below tests/unit/, linked with the portable modules, the headless platform and the helpers'
# parts; terminal-tests: those of the terminal. GoogleTest is built from its sources, for Linux and for Windows alike.

if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
    message(FATAL_ERROR "/usr/src/googletest is missing: install googletest (tools/setup/install.sh build)")
endif()

set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

file(GLOB_RECURSE terminal_sources CONFIGURE_DEPENDS tests/unit/terminal/*.cpp)
file(GLOB_RECURSE sources CONFIGURE_DEPENDS tests/unit/*.cpp)
list(REMOVE_ITEM sources ${terminal_sources})
add_executable(unit-tests ${sources})
qxterm_link(unit-tests qxterm_scenario_parts qxterm_model)
target_link_libraries(unit-tests PRIVATE zpt_ssh_parts zpt_tnetd_parts setup_parts)

# The terminal needs neither connections nor application: its tests do not link them.
add_executable(terminal-tests ${terminal_sources})
qxterm_link(terminal-tests qxterm_terminal qxterm_headless)

if(QXTERM_SANITIZE MATCHES "undefined")
    # It is looked for in what is tested. In the tests themselves it would cost a third of their compiling, and so would
    # optimising them.
    foreach(target unit-tests terminal-tests gtest gmock gmock_main)
        target_compile_options(${target} PRIVATE -fno-sanitize=undefined -O0)
    endforeach()
endif()

# It replaces operator new, whose other uses in the same unit the compiler would take into account.
set_source_files_properties(tests/unit/faults/memory.cpp PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)

foreach(program unit-tests terminal-tests)
    qxterm_unity(${program} 7)
    target_include_directories(${program} PRIVATE tests/unit)
    target_link_libraries(${program} PRIVATE GTest::gmock_main)
    if(CMAKE_CROSSCOMPILING)
        # What they test is built as it is handed over. They themselves need no speed, and a third less time to build.
        target_compile_options(${program} PRIVATE -O1)
    endif()
endforeach()
