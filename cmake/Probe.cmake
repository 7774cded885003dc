# What the tests of the window need besides the program.
#
# qxterm-probe.exe: the program with ears (tests/windows/probe). neighbour.exe: what others do to it. glyphs.exe: how
# the system draws the terminal font.

if(NOT MINGW OR NOT TARGET qxterm)
    return()
endif()

file(GLOB probe_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/windows/probe/*.cpp")
set(dumps "${CMAKE_SOURCE_DIR}/tools/qxterm-scenario")
# What qxterm-scenario prints of the program's state, without what drives the program there.
foreach(subject screen scrollback keys menus profile timers state selection form)
    list(APPEND probe_sources "${dumps}/dump_${subject}.cpp")
endforeach()
list(APPEND probe_sources "${dumps}/output.cpp" "${dumps}/program_forms.cpp" "${dumps}/program_menus.cpp"
     "${CMAKE_SOURCE_DIR}/src/platform/headless/recorder.cpp"
)

add_executable(qxterm-probe WIN32 ${probe_sources} "${resource_script}")
set_target_properties(qxterm-probe PROPERTIES LINKER_LANGUAGE CXX)
target_include_directories(qxterm-probe PRIVATE "${dumps}" "${CMAKE_SOURCE_DIR}/resources")
target_link_libraries(
    qxterm-probe PRIVATE qxterm_options qxterm_json qxterm_core qxterm_win32 ${QXTERM_SYSTEM_LIBRARIES}
)
add_dependencies(qxterm-probe program)

# What other programs and the system do to it.
file(GLOB neighbour_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/windows/neighbour/*.cpp")
add_executable(neighbour ${neighbour_sources})
target_link_libraries(neighbour PRIVATE qxterm_options)

file(GLOB glyphs_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/windows/glyphs/*.cpp")
add_executable(glyphs ${glyphs_sources})
target_link_libraries(glyphs PRIVATE qxterm_options gdi32)
# It draws with the font that stands beside it.
add_dependencies(glyphs program_files)
# The least that a client has to do, to measure beside.
file(GLOB reader_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/windows/reader/*.cpp")
add_executable(reader ${reader_sources})
target_link_libraries(reader PRIVATE qxterm_options ws2_32)
