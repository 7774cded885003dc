# unit-tests: every file below tests/unit/, linked with the portable modules, the headless platform and the helpers'
# parts. GoogleTest is built from its sources, for Linux and for Windows alike.

if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
    message(FATAL_ERROR "/usr/src/googletest is missing: install googletest (tools/setup/install.sh build)")
endif()

set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

file(GLOB_RECURSE sources CONFIGURE_DEPENDS tests/unit/*.cpp)
add_executable(unit-tests ${sources})
target_include_directories(unit-tests PRIVATE tests/unit)
qxterm_link(unit-tests qxterm_scenario_parts)
target_link_libraries(unit-tests PRIVATE zpt_ssh_parts zpt_tnetd_parts GTest::gmock_main)

# The terminal must need neither connections nor application.
add_executable(terminal-alone tests/terminal-alone/terminal_alone.cpp)
qxterm_link(terminal-alone qxterm_terminal qxterm_headless)
