# What the tests of the window need besides the program.
#
# qxterm-probe.exe: the program with ears (tests/windows/probe). neighbour.exe: what others do to it. glyphs.exe: how
# the system draws the terminal font. reader.exe: the least that a client has to do. screen-reader.exe: what readers of
# the screen learn. asker.exe: how long a window takes to answer. zpt_*-faults.exe, stand-in.exe: helpers whose calls
# fail, with a client behind them.

file(GLOB sources CONFIGURE_DEPENDS tests/windows/probe/*.cpp tests/windows/faults/*.cpp)
qxterm_program(qxterm-probe FILES ${sources} ROOMS qxterm_dumps)
target_include_directories(qxterm-probe PRIVATE tests/windows)
add_dependencies(qxterm-probe program)

# The helpers, with calls that fail, and who stands in for the SSH client behind one of them.
foreach(helper zpt_ssh zpt_tnetd)
    file(GLOB sources CONFIGURE_DEPENDS helpers/${helper}/win32/*.cpp tests/windows/faults/*.cpp)
    add_executable(${helper}-faults ${sources})
    target_link_libraries(${helper}-faults PRIVATE qxterm_options ${helper}_parts zpt_common_win32)
endforeach()
target_link_libraries(zpt_ssh-faults PRIVATE iphlpapi)
file(GLOB stand_in_sources CONFIGURE_DEPENDS tests/windows/stand-in/*.cpp)
add_executable(stand-in ${stand_in_sources})
target_link_libraries(stand-in PRIVATE qxterm_options zpt_common ws2_32)

# What other programs and the system do to it.
file(GLOB neighbour_sources CONFIGURE_DEPENDS tests/windows/neighbour/*.cpp)
add_executable(neighbour ${neighbour_sources})
target_link_libraries(neighbour PRIVATE qxterm_options)

file(GLOB glyphs_sources CONFIGURE_DEPENDS tests/windows/glyphs/*.cpp)
add_executable(glyphs ${glyphs_sources})
target_link_libraries(glyphs PRIVATE qxterm_options gdi32)
# It draws with the font that stands beside it.
add_dependencies(glyphs program_files)

# The least that a client has to do, to measure beside.
file(GLOB reader_sources CONFIGURE_DEPENDS tests/windows/reader/*.cpp)
add_executable(reader ${reader_sources})
target_link_libraries(reader PRIVATE qxterm_options ws2_32)

# What a program learns that reads the screen to its user.
file(GLOB screen_reader_sources CONFIGURE_DEPENDS tests/windows/screen-reader/*.cpp)
add_executable(screen-reader ${screen_reader_sources})
target_link_libraries(
    screen-reader PRIVATE qxterm_options qxterm_json uuid user32 ole32 oleaut32 oleacc
)

# Asks a window again and again, and tells how long it took to answer (./endure).
file(GLOB asker_sources CONFIGURE_DEPENDS tests/windows/asker/*.cpp)
add_executable(asker ${asker_sources})
target_link_libraries(asker PRIVATE qxterm_options user32)

# What somebody might put beside a program, under the name of one of Windows' libraries.
add_library(planted MODULE tests/windows/planted/planted.cpp)
set_target_properties(planted PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
target_link_libraries(planted PRIVATE qxterm_options)
