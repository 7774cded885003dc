# How every file of the project is compiled. GoogleTest, which is built here too, gets the sanitizers (they
# must cover a whole program) but not the warnings.

add_library(qxterm_options INTERFACE)
target_compile_options(
    qxterm_options
    INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wall
              -Wextra
              -Wconversion
              -Wshadow
              -Werror>
)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # This version sees overlapping copies where a literal and a temporary string are joined.
    target_compile_options(qxterm_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()
target_include_directories(qxterm_options INTERFACE "${CMAKE_SOURCE_DIR}/src")

if(QXTERM_SANITIZE)
    add_compile_options(-fsanitize=${QXTERM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QXTERM_SANITIZE})
    # Places outside an array that lies within another object are none of the sanitizers' business.
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

# Assertions and __FILE__ name a file as the project knows it, and equal sources give equal programs.
add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=>)

# What is handed over is optimised as a whole and holds no code that nothing calls. Its objects also hold ordinary
# code, which the tests link without doing that work once more.
add_library(qxterm_whole_program INTERFACE)
if(MINGW)
    target_compile_options(
        qxterm_whole_program INTERFACE -flto=auto -ffat-lto-objects -ffunction-sections -fdata-sections
                                       -fstack-protector-strong
    )
endif()

if(MINGW)
    # Each program names the libraries of the system that it calls.
    set(CMAKE_CXX_STANDARD_LIBRARIES "")
    # -static: the program needs no DLL but the system's own. Without a time stamp a build can be repeated
    # byte for byte.
    add_link_options(-static -Wl,--tsaware -Wl,--no-insert-timestamp)
    # Brings the routine that ends a program whose stack was written over.
    add_link_options(-fstack-protector-strong)
endif()

find_program(QXTERM_CCACHE ccache)
mark_as_advanced(QXTERM_CCACHE)
if(QXTERM_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${QXTERM_CCACHE}")
endif()

# The JSON library is headers only. The cross compiler must never see the whole of /usr/include, so its one
# folder is linked into the build folder and found there by every build alike.
add_library(qxterm_json INTERFACE)
find_path(
    QXTERM_JSON_FOLDER nlohmann/json.hpp
    PATHS /usr/include /usr/local/include
    NO_CMAKE_FIND_ROOT_PATH
)
mark_as_advanced(QXTERM_JSON_FOLDER)
if(QXTERM_JSON_FOLDER)
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/json")
    file(CREATE_LINK "${QXTERM_JSON_FOLDER}/nlohmann" "${CMAKE_BINARY_DIR}/json/nlohmann" SYMBOLIC)
    target_include_directories(qxterm_json SYSTEM INTERFACE "${CMAKE_BINARY_DIR}/json")
else()
    message(WARNING "nlohmann/json.hpp was not found: install nlohmann-json3-dev (tools/setup/install.sh build)")
endif()
