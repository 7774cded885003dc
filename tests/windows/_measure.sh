#!/usr/bin/env bash
# Measures the program in its window; needs build/windows (./test builds it). No test.
cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
export QXTERM_BUILD=${QXTERM_BUILD:-$PWD/build/windows}
# Room for several windows side by side.
export QXTERM_SCREEN=${QXTERM_SCREEN:-1600x1200x24}
exec tools/setup/with-display.sh tools/setup/with-prefix.sh python3 tests/windows/measure "$@"
