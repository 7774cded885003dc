# Registers each suite of a GoogleTest program as one ctest test, named unit/SUITE: a process for each of its cases would
# cost several times what the cases themselves do. Run behind the program's linking:
#
#   cmake -DPROGRAM=FILE -DTESTS=FILE.cmake -DRUNNER=SCRIPT -DFOLDER=DIR -P RegisterSuites.cmake

execute_process(
    COMMAND "${PROGRAM}" --gtest_list_tests
    OUTPUT_VARIABLE listed
    COMMAND_ERROR_IS_FATAL ANY
)
string(REPLACE "\n" ";" lines "${listed}")
set(suites)
foreach(line IN LISTS lines)
    # "Suite.", or "Prefix/Suite." of a suite with parameters; cases stand indented below.
    if(line MATCHES "^([A-Za-z0-9_]+/)?([A-Za-z0-9_]+)\\.")
        set(suite "${CMAKE_MATCH_2}")
        list(APPEND suites "${suite}")
        list(APPEND filter_${suite} "${CMAKE_MATCH_1}${suite}.*")
    endif()
endforeach()
list(REMOVE_DUPLICATES suites)
if(NOT suites)
    message(FATAL_ERROR "${PROGRAM} lists no tests")
endif()

set(text "")
foreach(suite IN LISTS suites)
    list(JOIN filter_${suite} ":" filter)
    set(name "unit/${suite}")
    string(
        APPEND
        text
        "add_test([[${name}]] [[${RUNNER}]] [[${name}]] [[${PROGRAM}]] [[--gtest_filter=${filter}]] --gtest_brief=1)\n"
        "set_tests_properties([[${name}]] PROPERTIES LABELS unit TIMEOUT 300 PROCESSORS 2 WORKING_DIRECTORY [[${FOLDER}]])\n"
    )
endforeach()
file(WRITE "${TESTS}" "${text}")
