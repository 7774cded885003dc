#!/usr/bin/env bash
# Measures the program in its window; needs build/windows (./test builds it). No test.
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
export QXTERM_BUILD=${QXTERM_BUILD:-$PWD/build/windows}
exec tools/setup/with-display.sh tools/setup/with-prefix.sh python3 tests/windows/measure.py "$@"
