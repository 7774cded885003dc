# The rooms of the program. Each is an object library and lists what it needs. Platform and its implementation call each
# other, so that the linker has to see all their objects at once.

# qxterm_unity(TARGET N): compiles up to N of its files in one go. For files whose headers cost more than they do
# themselves. What stands at file scope in one of them is seen by those behind it: each keeps to a namespace of its own.
option(QXTERM_UNITY "Compile tests and tools several files in one go" ON)
function(qxterm_unity target files)
    set_target_properties(
        ${target} PROPERTIES UNITY_BUILD ${QXTERM_UNITY} UNITY_BUILD_BATCH_SIZE ${files}
    )
endfunction()

# qxterm_room(NAME IN|BELOW folder [EXCEPT file] [APART file...] [NEEDS room...]): the C++ files of the folder, or also
# those below it. APART: those that name things of their own as others do.
function(qxterm_room name)
    cmake_parse_arguments(PARSE_ARGV 1 room "" "IN;EXCEPT" "BELOW;APART;NEEDS")
    if(room_BELOW)
        list(TRANSFORM room_BELOW APPEND "/*.cpp")
        file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${room_BELOW})
    else()
        file(GLOB sources CONFIGURE_DEPENDS "${room_IN}/*.cpp")
    endif()
    list(REMOVE_ITEM sources "${CMAKE_SOURCE_DIR}/${room_EXCEPT}")
    add_library(${name} OBJECT ${sources})
    target_link_libraries(${name} PRIVATE qxterm_options qxterm_whole_program)
    set_property(TARGET ${name} PROPERTY QXTERM_NEEDS "${room_NEEDS}")
    if(QXTERM_SANITIZE)
        # For the tests, in half the time. What is handed over, and measured, is compiled file by file.
        qxterm_unity(${name} 8)
        set_source_files_properties(${room_APART} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
endfunction()

# qxterm_link(PROGRAM ROOM...): links the rooms and all that they need.
function(qxterm_link program)
    set(waiting ${ARGN})
    set(rooms)
    while(waiting)
        list(POP_FRONT waiting room)
        if(NOT room IN_LIST rooms)
            list(APPEND rooms ${room})
            get_property(needs TARGET ${room} PROPERTY QXTERM_NEEDS)
            list(APPEND waiting ${needs})
        endif()
    endwhile()
    target_link_libraries(${program} PRIVATE qxterm_options ${rooms})
endfunction()

# What is the same on every system. Each needs one of the two implementations of the platform beside it.
qxterm_room(qxterm_platform IN src/platform)
qxterm_room(
    qxterm_base
    BELOW src/diag src/timers src/config
    NEEDS qxterm_platform
)
qxterm_room(
    qxterm_terminal
    BELOW src/terminal
    APART src/terminal/interpreter/telnet.cpp src/terminal/view/view_keys.cpp
    NEEDS qxterm_base qxterm_platform
)
qxterm_room(
    qxterm_connection
    BELOW src/connection
    APART src/connection/modem.cpp src/connection/network.cpp src/connection/serial_line.cpp src/connection/ssh.cpp
          src/connection/ssh_prompt.cpp
    NEEDS qxterm_terminal qxterm_base qxterm_platform
)
target_link_libraries(qxterm_connection PUBLIC zpt_common)
qxterm_room(
    qxterm_app
    BELOW src/app
    APART src/app/frmterm.cpp src/app/dialogs/profile_dialog.cpp src/app/dialogs/splash.cpp
    NEEDS qxterm_connection qxterm_terminal qxterm_base qxterm_platform
)

# The platform in memory, and on Windows.
qxterm_room(qxterm_headless IN src/platform/headless NEEDS qxterm_platform)
if(MINGW)
    qxterm_room(
        qxterm_win32
        IN src/platform/win32
        EXCEPT src/platform/win32/win_main.cpp
        NEEDS qxterm_platform
    )
    target_link_libraries(
        qxterm_win32 PUBLIC zpt_common_win32 user32 gdi32 comctl32 ws2_32 iphlpapi uuid
    )
endif()
