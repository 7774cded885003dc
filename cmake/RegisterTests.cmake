# Everything that `./test` runs is registered here, so that ctest is the one runner and the one count.
#
# Labels: unit, scenario, fuzz-corpus, demohost, recordings, check; wine for all that runs the Windows build (`./test --quick`
# leaves those out).

find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(checks "${CMAKE_SOURCE_DIR}/tools/checks")

# qxterm_test(NAME LABEL SECONDS COMMAND...): a test that says, when it fails, how to run it alone.
function(qxterm_test name label seconds)
    add_test(NAME "${name}" COMMAND "${checks}/named-test.sh" "${name}" ${ARGN}
             WORKING_DIRECTORY "${CMAKE_SOURCE_DIR}"
    )
    # What runs here computes; what runs under Wine mostly waits. ./test lets three times as many of those run as there
    # are processors, and counts two for each of these.
    set_tests_properties(
        "${name}" PROPERTIES LABELS "${label}" TIMEOUT ${seconds} PROCESSORS 2
    )
endfunction()

# Unit tests: one test a suite

foreach(program unit-tests terminal-tests)
    set(suites "${CMAKE_BINARY_DIR}/${program}-suites.cmake")
    if(NOT EXISTS "${suites}")
        file(WRITE "${suites}" "add_test([[unit/${program}]] [[${program} is not built]])\n")
    endif()
    add_custom_command(
        TARGET ${program}
        POST_BUILD
        COMMAND
            "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:${program}>" "-DTESTS=${suites}"
            "-DRUNNER=${checks}/named-test.sh" "-DFOLDER=${CMAKE_SOURCE_DIR}" -P
            "${CMAKE_SOURCE_DIR}/cmake/RegisterSuites.cmake"
        VERBATIM
    )
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${suites}")
endforeach()

# Scenarios: one test a file

file(GLOB_RECURSE scenarios CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}/tests/scenarios"
     "${CMAKE_SOURCE_DIR}/tests/scenarios/*.scn"
)
foreach(scenario IN LISTS scenarios)
    string(REGEX REPLACE "\\.scn$" "" name "${scenario}")
    qxterm_test(
        "scenario/${name}"
        scenario
        120
        "${Python3_EXECUTABLE}"
        "${checks}/run-scenario.py"
        --program
        "$<TARGET_FILE:qxterm-scenario>"
        "tests/scenarios/${scenario}"
    )
endforeach()
qxterm_test(
    scenario/thousand-times
    scenario
    300
    "${Python3_EXECUTABLE}"
    tests/reconnections/thousand_times.py
    "$<TARGET_FILE:qxterm-scenario>"
)

# Trace logs played back

qxterm_test(replay/round-trip scenario 300 "${Python3_EXECUTABLE}" tests/replay/round_trip.py
            "$<TARGET_FILE:qxterm-scenario>"
)
qxterm_test(
    replay/pictures
    scenario
    120
    "${CMAKE_COMMAND}"
    -E
    env
    "QXTERM_SCENARIO=$<TARGET_FILE:qxterm-scenario>"
    "${Python3_EXECUTABLE}"
    tests/replay/test_pictures.py
)

# The fuzzers' inputs, without the fuzzers

foreach(source IN LISTS fuzz_targets)
    get_filename_component(name "${source}" NAME_WE)
    qxterm_test("fuzz-corpus/${name}" fuzz-corpus 120 "$<TARGET_FILE:fuzz-replay>" ${name}
                "fuzz/corpus/${name}"
    )
endforeach()

# Random commands for the whole program, with failures planned: some of the many that fuzz/random-steps plays.
qxterm_test(fuzz-corpus/random-steps fuzz-corpus 120 "$<TARGET_FILE:random-steps>" --steps 30000)

# The demonstration host

file(GLOB demohost_tests CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/demohost/test_*.py")
foreach(file IN LISTS demohost_tests)
    get_filename_component(name "${file}" NAME_WE)
    qxterm_test(
        "demohost/${name}"
        demohost
        300
        "${Python3_EXECUTABLE}"
        -m
        unittest
        discover
        -s
        tests/demohost
        -p
        ${name}.py
    )
endforeach()

# What judges hours of use (./endure), and a piece of its scenario

qxterm_test(
    check/endurance
    check
    120
    "${CMAKE_COMMAND}"
    -E
    env
    "QXTERM_SCENARIO=$<TARGET_FILE:qxterm-scenario>"
    "${Python3_EXECUTABLE}"
    -m
    unittest
    discover
    -s
    tests/endurance
    -p
    "test_*.py"
)

# Recorded sessions: what the terminal description promises and what the program shows

file(GLOB recordings CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/recordings/*.bin")
foreach(file IN LISTS recordings)
    get_filename_component(name "${file}" NAME_WE)
    qxterm_test(
        "recordings/${name}"
        recordings
        120
        "${Python3_EXECUTABLE}"
        tests/recordings/play.py
        --program
        "$<TARGET_FILE:qxterm-scenario>"
        ${name}
    )
endforeach()
qxterm_test(
    recordings/interpreter
    recordings
    120
    "${Python3_EXECUTABLE}"
    -m
    unittest
    discover
    -s
    tests/recordings
    -p
    "test_*.py"
)

# Checks that keep the house in order

foreach(check includes system-calls words format code-map sequences version)
    qxterm_test("check/${check}" check 120 "${Python3_EXECUTABLE}" "${checks}/check-${check}.py")
endforeach()
qxterm_test(
    check/self-test check 120 "${Python3_EXECUTABLE}" -m unittest discover -s tools/checks -p "test_*.py"
)

# Static analysis. clang-tidy is the longest of the checks, and works on every processor.
foreach(check clang-tidy cppcheck)
    qxterm_test("check/${check}" check 900 "${Python3_EXECUTABLE}" "${checks}/check-${check}.py")
endforeach()
set_tests_properties(check/clang-tidy PROPERTIES COST 150)

# What the pages say
foreach(check links changes)
    qxterm_test("check/${check}" check 120 "${Python3_EXECUTABLE}" "${checks}/check-${check}.py")
endforeach()
foreach(check help examples)
    qxterm_test(
        "check/${check}" check 120 "${Python3_EXECUTABLE}" "${checks}/check-${check}.py" --program
        "$<TARGET_FILE:qxterm-scenario>"
    )
endforeach()
qxterm_test(check/help-file check 120 "${Python3_EXECUTABLE}" tools/make-help/make_help.py --check)

if(NOT QXTERM_WINE_TESTS)
    return()
endif()

# The Windows build under Wine, each test in a prefix and on a display of its own. They wait more than they
# compute: begun first (COST), they leave the processors to the others.

set(windows_build "${CMAKE_SOURCE_DIR}/build/windows")
set(with_prefix "${CMAKE_SOURCE_DIR}/tools/setup/with-prefix.sh")
set(with_display "${CMAKE_SOURCE_DIR}/tools/setup/with-display.sh")

function(qxterm_wine_test name seconds)
    qxterm_test("${name}" wine ${seconds} ${ARGN})
    set_tests_properties(
        "${name}" PROPERTIES ENVIRONMENT "QXTERM_BUILD=${windows_build}" FIXTURES_REQUIRED "wine_prefix;wine_peers" COST
                             100 PROCESSORS 1 SKIP_RETURN_CODE 77  # for want of a privilege, and of nothing else
    )
endfunction()

qxterm_test(
    wine/fault-table
    wine
    60
    "${Python3_EXECUTABLE}"
    "${checks}/check-faults.py"
    "${windows_build}/qxterm-probe.exe"
    "${windows_build}/zpt_ssh-faults.exe"
    "${windows_build}/zpt_tnetd-faults.exe"
)

qxterm_test(wine/program-files wine 60 "${Python3_EXECUTABLE}" "${checks}/check-program.py" "${windows_build}")

qxterm_test(
    wine/package-files wine 300 "${Python3_EXECUTABLE}" tests/packaging/package_files.py "${windows_build}"
)

# For those that watch the clock closely: alone on the machine.
function(qxterm_run_alone)
    set_tests_properties(${ARGN} PROPERTIES RUN_SERIAL ON)
endfunction()

# Made once, outside the time of any single test.
qxterm_test(wine/prefix wine 300 "${with_prefix}" true)
set_tests_properties(wine/prefix PROPERTIES RUN_SERIAL ON FIXTURES_SETUP wine_prefix)

# What the tests log in to, fetched once: a test in a network of its own cannot, and several would get in one another's way.
qxterm_test(wine/peers wine 600 bash -c "tools/setup/telnetd.sh && tools/setup/plink.sh")
set_tests_properties(wine/peers PROPERTIES RUN_SERIAL ON FIXTURES_SETUP wine_peers)

foreach(program unit-tests terminal-tests)
    qxterm_wine_test(
        wine/${program} 600 "${with_prefix}" "${checks}/wine-run.sh" "${windows_build}/${program}.exe"
        --gtest_brief=1
    )
endforeach()
# One program after the other: two that start at the same moment are now and then one too many for Wine.
qxterm_wine_test(
    wine/scenarios
    900
    "${with_prefix}"
    --keep-server
    "${Python3_EXECUTABLE}"
    "${checks}/run-scenario.py"
    --program
    "${checks}/wine-run.sh ${windows_build}/qxterm-scenario.exe"
    --jobs
    1
    --all
    tests/scenarios
)

# Scripts whose name begins with "_" are there to be sourced by the others; pictures.sh takes pictures to be looked at.
file(GLOB_RECURSE window_tests CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}/tests/windows"
     "${CMAKE_SOURCE_DIR}/tests/windows/*.sh"
)
list(FILTER window_tests EXCLUDE REGEX "(^|/)(_[^/]*|lib/.*|pictures\\.sh)$")
# Those that listen at the telnet port, behind their tunnels, and look through the tables of ports.
set(in_a_network_of_their_own ssh-sessions reconnections-ssh)
foreach(script IN LISTS window_tests)
    string(REGEX REPLACE "\\.sh$" "" name "${script}")
    set(around "${with_display}" "${with_prefix}")
    if(name IN_LIST in_a_network_of_their_own)
        list(PREPEND around "${CMAKE_SOURCE_DIR}/tools/setup/with-network.sh")
    endif()
    qxterm_wine_test("wine/${name}" 600 ${around} bash "${CMAKE_SOURCE_DIR}/tests/windows/${script}")
endforeach()
# The longest first.
set_tests_properties(
    wine/glass wine/ssh-sessions wine/reconnections-ssh wine/modem-calls wine/bad-connections wine/telnet-synch
    wine/package PROPERTIES COST 200
)
qxterm_run_alone(wine/flood-answers)
