# The Windows program and its helpers. The target `program` builds all that is needed to start it.

add_custom_target(program)

# Whoever can write into a program's folder could put a library there that bears the name of one of Windows': those that a
# program names in its table of imports are looked for beside it first, before any of its code runs. So the programs
# name only what Windows never looks for (kernel32, msvcrt), and load all else at its first call, when they have said
# that libraries come from the system's folder alone. DLL by DLL an import library of that kind goes before the tool
# chain's.
set(delayed_folder "${CMAKE_BINARY_DIR}/delayed")
file(MAKE_DIRECTORY "${delayed_folder}")
foreach(name user32 gdi32 comctl32 ws2_32 iphlpapi advapi32)
    find_library(QXTERM_IMPORTS_${name} lib${name}.a REQUIRED)
    mark_as_advanced(QXTERM_IMPORTS_${name})
    add_custom_command(
        OUTPUT "${delayed_folder}/lib${name}.a"
        COMMAND
            "${CMAKE_SOURCE_DIR}/cmake/make-delayed.sh" "${CMAKE_NM}" "${CMAKE_DLLTOOL}" ${name}
            "${QXTERM_IMPORTS_${name}}" "${delayed_folder}/lib${name}.a"
        DEPENDS cmake/make-delayed.sh "${QXTERM_IMPORTS_${name}}"
        VERBATIM
    )
    list(APPEND delayed_libraries "${delayed_folder}/lib${name}.a")
endforeach()
add_custom_target(delayed_imports DEPENDS ${delayed_libraries})

function(qxterm_delayed_imports target)
    add_dependencies(${target} delayed_imports)
    target_link_directories(${target} PRIVATE "${delayed_folder}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${delayed_libraries})
endfunction()

function(qxterm_handed_over target)
    target_link_libraries(${target} PRIVATE qxterm_whole_program)
    # The same seed of the names that the compiler makes up: two builds give the same bytes.
    target_link_options(
        ${target} PRIVATE -flto=auto -frandom-seed=${target} -O3 -Wl,--gc-sections -s
    )
endfunction()

# windres gets folders and definitions, and none of the C++ options.
enable_language(RC)
file(GLOB_RECURSE resource_files CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/resources/*"
     "${CMAKE_SOURCE_DIR}/src/platform/resource_ids.h" "${CMAKE_SOURCE_DIR}/src/platform/program_title.h"
)
set(resource_script "${CMAKE_SOURCE_DIR}/resources/qxterm.rc")
set(helper_script "${CMAKE_SOURCE_DIR}/resources/helper.rc")

# The project's version, and the title as the program itself says it, for version resources and manifest.
set(QXTERM_VERSION_TEXT "${PROJECT_VERSION}.0")
file(STRINGS src/platform/program_title.h QXTERM_TITLE REGEX "#define QXTERM_PROGRAM_TITLE")
string(REGEX REPLACE ".*\"(.*)\"" "\\1" QXTERM_TITLE "${QXTERM_TITLE}")
set(made_files "${CMAKE_BINARY_DIR}/made")
foreach(name version.h qxterm.manifest)
    configure_file(resources/${name}.in "${made_files}/${name}" @ONLY)
endforeach()

set_source_files_properties(
    "${resource_script}" "${helper_script}"
    PROPERTIES OBJECT_DEPENDS "${resource_files};${made_files}/version.h;${made_files}/qxterm.manifest"
)

# qxterm_program(NAME [FILES file...] [ROOMS room...]): the whole program, and what else stands in files and rooms.
function(qxterm_program name)
    cmake_parse_arguments(PARSE_ARGV 1 more "" "" "FILES;ROOMS")
    add_executable(${name} WIN32 src/platform/win32/win_main.cpp ${more_FILES} "${resource_script}")
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_include_directories(${name} PRIVATE resources "${made_files}")
    qxterm_link(${name} ${more_ROOMS} qxterm_app qxterm_win32)
endfunction()

qxterm_program(qxterm)
qxterm_handed_over(qxterm)
qxterm_delayed_imports(qxterm)
add_dependencies(program qxterm)

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

# qxterm_helper_version(TARGET): gives a program that stands beside qxterm.exe its version resource.
function(qxterm_helper_version target)
    target_sources(${target} PRIVATE "${helper_script}")
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
    target_include_directories(${target} PRIVATE resources "${made_files}")
    target_compile_definitions(${target} PRIVATE $<$<COMPILE_LANGUAGE:RC>:HELPER_NAME=${target}>)
endfunction()

# They are started without a console of their own, but are console programs, so that they can be tried from a command
# line.
foreach(helper zpt_ssh zpt_tnetd)
    file(GLOB sources CONFIGURE_DEPENDS helpers/${helper}/win32/*.cpp)
    add_executable(${helper} ${sources})
    qxterm_helper_version(${helper})
    target_link_libraries(${helper} PRIVATE qxterm_options ${helper}_parts zpt_common_win32)
    qxterm_handed_over(${helper})
    qxterm_delayed_imports(${helper})
    add_dependencies(program ${helper})
endforeach()
# It asks who listens on a port.
target_link_libraries(zpt_ssh PRIVATE iphlpapi)

# The installer's own: qxterm-start.exe, which the start menu starts, and the library of the package's actions.
file(GLOB setup_sources CONFIGURE_DEPENDS helpers/setup/win32/*.cpp)
list(FILTER setup_sources EXCLUDE REGEX "/(start|actions)\\.cpp$")
add_executable(qxterm-start WIN32 helpers/setup/win32/start.cpp ${setup_sources})
add_library(setup-actions MODULE helpers/setup/win32/actions.cpp ${setup_sources})
target_link_libraries(setup-actions PRIVATE msi)
set_target_properties(setup-actions PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
target_link_options(qxterm-start PRIVATE -municode)
qxterm_delayed_imports(qxterm-start)
foreach(target qxterm-start setup-actions)
    target_link_libraries(${target} PRIVATE qxterm_options setup_parts zpt_common_win32 advapi32)
    qxterm_helper_version(${target})
    qxterm_handed_over(${target})
    add_dependencies(program ${target})
endforeach()
