# unit-tests: every file below tests/unit/, linked with the portable modules and the headless platform.
# GoogleTest is built from its sources, for Linux and for Windows alike.

file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/unit/*.cpp")
if(NOT sources)
    return()
endif()
if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
    message(FATAL_ERROR "/usr/src/googletest is missing: install googletest (tools/setup/install.sh build)")
endif()

set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

# The helpers' own parts but for those in their win32/ folders, which call the system.
file(GLOB helper_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/helpers/*/*.cpp")
add_executable(unit-tests ${sources} ${helper_sources})
target_include_directories(
    unit-tests PRIVATE "${CMAKE_SOURCE_DIR}/tests/unit" "${CMAKE_SOURCE_DIR}/helpers"
)
target_link_libraries(
    unit-tests PRIVATE qxterm_options qxterm_json qxterm_scenario_parts qxterm_core qxterm_headless
                       GTest::gmock_main
)
