# The Windows program and its helpers. The target `program` builds all that is needed to start it.

add_custom_target(program)

if(NOT MINGW)
    return()
endif()

set(QXTERM_SYSTEM_LIBRARIES user32 gdi32 comctl32 ws2_32 iphlpapi)

# What is handed over is optimised as a whole and holds no code that nothing calls. Its objects also hold ordinary
# code, which the tests link without doing that work once more.
set(whole_program -flto=auto -ffat-lto-objects -ffunction-sections -fdata-sections)
foreach(room qxterm_core qxterm_win32)
    target_compile_options(${room} PRIVATE ${whole_program})
endforeach()
function(qxterm_handed_over target)
    target_compile_options(${target} PRIVATE ${whole_program})
    # The same seed of the names that the compiler makes up: two builds give the same bytes.
    target_link_options(
        ${target} PRIVATE -flto=auto -frandom-seed=${target} -O3 -Wl,--gc-sections -s
    )
endfunction()

# windres gets folders and definitions, and none of the C++ options.
enable_language(RC)
file(GLOB_RECURSE resource_files CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/*"
     "${CMAKE_SOURCE_DIR}/src/platform/resource_ids.h"
)
set(resource_script "${CMAKE_SOURCE_DIR}/resources/qxterm.rc")

file(GLOB_RECURSE platform_files CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/platform/win32/*.cpp")
if(platform_files)
    add_executable(qxterm WIN32)
    target_link_libraries(
        qxterm PRIVATE qxterm_options qxterm_core qxterm_win32 ${QXTERM_SYSTEM_LIBRARIES}
    )
    set_target_properties(qxterm PROPERTIES LINKER_LANGUAGE CXX)
    qxterm_handed_over(qxterm)
    if(EXISTS "${resource_script}")
        target_sources(qxterm PRIVATE "${resource_script}")
        target_include_directories(qxterm PRIVATE "${CMAKE_SOURCE_DIR}/resources")
        set_source_files_properties("${resource_script}" PROPERTIES OBJECT_DEPENDS "${resource_files}")
    endif()
    add_dependencies(program qxterm)
endif()

# Files that the program looks for in its own folder.
set(beside_program ${resource_files})
list(FILTER beside_program INCLUDE REGEX "\\.(chm|ttf|dat)$")
foreach(file IN LISTS beside_program)
    get_filename_component(name "${file}" NAME)
    add_custom_command(
        OUTPUT "${CMAKE_BINARY_DIR}/${name}"
        COMMAND "${CMAKE_COMMAND}" -E copy "${file}" "${CMAKE_BINARY_DIR}/${name}"
        DEPENDS "${file}"
        VERBATIM
    )
    list(APPEND copied_files "${CMAKE_BINARY_DIR}/${name}")
endforeach()
add_custom_target(program_files ALL DEPENDS ${copied_files})
add_dependencies(program program_files)

# One helper program a folder; what stands in a win32/ folder calls the system. They are started without a
# console of their own, but are console programs, so that they can be tried from a command line.
foreach(helper zpt_ssh zpt_tnetd)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/helpers/${helper}/*.cpp"
         "${CMAKE_SOURCE_DIR}/helpers/common/*.cpp"
    )
    file(GLOB own_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/helpers/${helper}/*.cpp")
    if(own_sources)
        add_executable(${helper} ${sources})
        target_include_directories(${helper} PRIVATE "${CMAKE_SOURCE_DIR}/helpers")
        target_link_libraries(${helper} PRIVATE qxterm_options ws2_32 iphlpapi)
        qxterm_handed_over(${helper})
        add_dependencies(program ${helper})
    endif()
endforeach()
