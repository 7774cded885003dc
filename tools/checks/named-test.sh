#!/usr/bin/env bash
# Runs one test, and says below the output of a failed one how to run it alone.
#
#   named-test.sh NAME COMMAND ...       a test registered under NAME
#   named-test.sh --gtest PROGRAM ...    one case of the unit tests, named by its --gtest_filter argument
set -u

name=$1
shift
if [[ $name == --gtest ]]; then
    name=
    for argument in "$@"; do
        [[ $argument == --gtest_filter=* ]] && name=unit/${argument#*=}
    done
fi

"$@"
status=$?
if [[ $status -ne 0 && $status -ne 77 && -n $name ]]; then
    printf '\nTo run it alone: ./test -R '\''^%s$'\''\n' "$name"
fi
exit "$status"
