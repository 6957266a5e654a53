#!/usr/bin/env bash
# Runs the Windows build's test suites and checks under Wine, in a prefix of
# the build's own, on a virtual display.
#   tools/windows/run-tests.sh BUILD_DIR [ctest arguments...]
set -euo pipefail
build=$(cd "$1" && pwd)
shift
. "$(dirname "$0")/wine-prefix.sh" "$build"

# Wine's services start once, before ctest: started by the first test program
# instead, they would hold ctest's output pipes open. A failed test runs once
# more, as in make test: a test program under Wine has now and then ended at
# once with no output (0.03 s) and passed on every run after. The screen
# saver stays off: the editor checks read the screen back.
xvfb-run -a -s "-screen 0 1280x1024x24 -s 0" bash -c '
    wineserver -p
    wine cmd /c exit < /dev/null > /dev/null 2>&1
    cd "$0"
    status=0
    ctest --output-on-failure -j 1 --repeat until-pass:2 "$@" || status=$?
    wineserver -k || true
    exit $status' "$build" "$@"
