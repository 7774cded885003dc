# qxterm-scenario: the program's modules on the headless platform, driven by a text file.

file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tools/qxterm-scenario/*.cpp")
set(entry "${CMAKE_SOURCE_DIR}/tools/qxterm-scenario/main.cpp")

# All of it but main() is a library of its own, so that unit tests can link it.
set(parts ${sources})
list(REMOVE_ITEM parts "${entry}")
if(parts AND EXISTS "${entry}")
    add_library(qxterm_scenario_parts OBJECT ${parts})
    target_link_libraries(qxterm_scenario_parts PRIVATE qxterm_options qxterm_json)
    target_include_directories(qxterm_scenario_parts PUBLIC "${CMAKE_SOURCE_DIR}/tools/qxterm-scenario")
else()
    add_library(qxterm_scenario_parts INTERFACE)
endif()

if(EXISTS "${entry}")
    add_executable(qxterm-scenario "${entry}")
    target_link_libraries(
        qxterm-scenario PRIVATE qxterm_options qxterm_json qxterm_scenario_parts qxterm_core
                                qxterm_headless
    )
endif()
