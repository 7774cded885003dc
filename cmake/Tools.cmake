# Tools that run the program's modules on the headless platform.

# Starting the program in memory, for all that does so.
qxterm_room(
    qxterm_headless_session
    IN tools/headless-session
    NEEDS qxterm_app qxterm_headless
)
target_include_directories(qxterm_headless_session PUBLIC tools)

# The program's state as JSON; the tests of the window print it too.
set(scenario_folder "${CMAKE_SOURCE_DIR}/tools/qxterm-scenario")
set(dumps
    dump_screen
    dump_scrollback
    dump_keys
    dump_menus
    dump_profile
    dump_timers
    dump_state
    dump_selection
    dump_form
    output
    program_forms
    program_menus
)
list(TRANSFORM dumps PREPEND "${scenario_folder}/")
list(TRANSFORM dumps APPEND ".cpp")
add_library(qxterm_dumps OBJECT ${dumps})
target_include_directories(qxterm_dumps PUBLIC "${scenario_folder}")
target_link_libraries(qxterm_dumps PUBLIC qxterm_json PRIVATE qxterm_options)
set_property(TARGET qxterm_dumps PROPERTY QXTERM_NEEDS qxterm_app)
qxterm_unity(qxterm_dumps 6)

# qxterm-scenario, driven by a text file. All of it but main() is a library of its own, so that unit tests can link it.
file(GLOB parts CONFIGURE_DEPENDS "${scenario_folder}/*.cpp")
list(REMOVE_ITEM parts "${scenario_folder}/main.cpp" ${dumps})
add_library(qxterm_scenario_parts OBJECT ${parts})
target_include_directories(qxterm_scenario_parts PUBLIC "${scenario_folder}" PRIVATE tools)
target_link_libraries(qxterm_scenario_parts PUBLIC qxterm_json PRIVATE qxterm_options)
set_property(TARGET qxterm_scenario_parts PROPERTY QXTERM_NEEDS qxterm_dumps qxterm_headless_session)
qxterm_unity(qxterm_scenario_parts 8)

add_executable(qxterm-scenario "${scenario_folder}/main.cpp")
qxterm_link(qxterm-scenario qxterm_scenario_parts)

# The terminal once more, plain and slow: fuzzers and unit tests hold the program against it.
if(QXTERM_TESTS OR QXTERM_FUZZERS)
    file(GLOB model_sources CONFIGURE_DEPENDS tests/model/*.cpp)
    add_library(qxterm_model OBJECT ${model_sources})
    target_include_directories(qxterm_model PUBLIC tests PRIVATE tools "${scenario_folder}")
    target_link_libraries(qxterm_model PRIVATE qxterm_options qxterm_json)
    set_property(TARGET qxterm_model PROPERTY QXTERM_NEEDS qxterm_scenario_parts)
endif()
