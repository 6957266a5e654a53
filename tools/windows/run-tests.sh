#!/usr/bin/env bash
# Runs the Windows build's test suites and checks under Wine, in a prefix of
# the build's own, on a virtual display.
#   tools/windows/run-tests.sh BUILD_DIR [ctest arguments...]
set -euo pipefail
build=$(cd "$1" && pwd)
shift

export WINEPREFIX=$build/wineprefix
export WINEDEBUG=-all
export WINEARCH=win64
# No Mono or Gecko: nothing here needs .NET or a browser, and Wine would
# otherwise offer to download them.
export WINEDLLOVERRIDES="mscoree,mshtml="

# The prefix is made with a display present: one made without reports no
# graphics outputs, and JUCE's windows then fail to open.
if [ ! -e "$WINEPREFIX/system.reg" ]; then
    xvfb-run -a -s "-screen 0 1280x1024x24" bash -c 'wineboot -i && wineserver -w'
fi

# Wine's services start once, before ctest: started by the first test program
# instead, they would hold ctest's output pipes open.
xvfb-run -a -s "-screen 0 1280x1024x24" bash -c '
    wineserver -p
    wine cmd /c exit < /dev/null > /dev/null 2>&1
    cd "$0"
    status=0
    ctest --output-on-failure -j 1 "$@" || status=$?
    wineserver -k || true
    exit $status' "$build" "$@"
