# The helpers' own parts: what they share with each other and with the terminal, and what can be tried without Windows.
# Folders named win32/ call the system.

file(GLOB sources CONFIGURE_DEPENDS helpers/common/*.cpp)
add_library(zpt_common STATIC ${sources})
target_include_directories(zpt_common PUBLIC helpers)
target_link_libraries(zpt_common PRIVATE qxterm_options qxterm_whole_program)

if(MINGW)
    file(GLOB sources CONFIGURE_DEPENDS helpers/common/win32/*.cpp)
    add_library(zpt_common_win32 STATIC ${sources})
    target_link_libraries(zpt_common_win32 PUBLIC zpt_common ws2_32 PRIVATE qxterm_options qxterm_whole_program)
endif()

foreach(helper zpt_ssh zpt_tnetd setup)
    file(GLOB sources CONFIGURE_DEPENDS helpers/${helper}/*.cpp)
    add_library(${helper}_parts OBJECT ${sources})
    target_link_libraries(${helper}_parts PUBLIC zpt_common PRIVATE qxterm_options qxterm_whole_program)
endforeach()
