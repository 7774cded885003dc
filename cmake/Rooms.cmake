# The rooms of src/, in three libraries: the portable modules, and the two implementations of platform/.
#
# They are object libraries because modules and platform call each other: the linker sees all their objects
# at once and needs no order.

# qxterm_room(TARGET FOLDER...): the C++ files of the folders and below them, as one object library. With no
# file there yet it stays an empty target, so that whatever links it can be written first.
function(qxterm_room target)
    set(patterns ${ARGN})
    list(TRANSFORM patterns PREPEND "${CMAKE_SOURCE_DIR}/")
    list(TRANSFORM patterns APPEND "/*.cpp")
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${patterns})
    # What the two implementations share stands directly in platform/ and belongs to the portable modules.
    if(target STREQUAL "qxterm_core")
        list(FILTER sources EXCLUDE REGEX "/src/platform/(win32|headless)/")
    endif()
    if(sources)
        add_library(${target} OBJECT ${sources})
        target_link_libraries(${target} PRIVATE qxterm_options)
    else()
        add_library(${target} INTERFACE)
    endif()
endfunction()

qxterm_room(
    qxterm_core
    src/platform
    src/diag
    src/timers
    src/config
    src/terminal
    src/connection
    src/app
)
qxterm_room(qxterm_headless src/platform/headless)
if(MINGW)
    qxterm_room(qxterm_win32 src/platform/win32)
endif()
