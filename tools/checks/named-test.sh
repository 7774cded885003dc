#!/usr/bin/env bash
# Runs one test, and says below the output of a failed one how to run it alone.
#
#   named-test.sh NAME COMMAND ...       a test registered under NAME
set -u

name=$1
shift
"$@"
status=$?
if [[ $status -ne 0 && $status -ne 77 ]]; then
    printf '\nTo run it alone: ./test -R '\''^%s$'\''\n' "$name"
fi
exit "$status"
